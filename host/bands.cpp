#include "bands.h"

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace {

using vips::VImage;

// Called by libvips for a part of the result, from several threads at once; `sequence` is the thread's
// own view of the source.
template <class Sample, int from, int to>
CALLED_BY_VIPS int Exchange(VipsRegion* result, void* sequence, void*, void*, gboolean*) {
  auto* const source = static_cast<VipsRegion*>(sequence);
  const VipsRect& area = result->valid;
  if (vips_region_prepare(source, &area) != 0) return -1;
  for (int y = area.top; y < area.top + area.height; ++y) {
    const auto* in = reinterpret_cast<const Sample*>(VIPS_REGION_ADDR(source, area.left, y));
    auto* out = reinterpret_cast<Sample*>(VIPS_REGION_ADDR(result, area.left, y));
    for (int x = 0; x < area.width; ++x, in += from, out += to) {
      const Sample alpha = from == 4 ? in[from - 1] : std::numeric_limits<Sample>::max();
      const Sample first = in[0], second = in[1], third = in[2];
      out[0] = third;
      out[1] = second;
      out[2] = first;
      if (to == 4) out[to - 1] = alpha;
    }
  }
  return 0;
}

template <class Sample>
VipsGenerateFn ExchangeOf(int from, int to) {
  if (from == 4) return to == 4 ? Exchange<Sample, 4, 4> : Exchange<Sample, 4, 3>;
  return to == 4 ? Exchange<Sample, 3, 4> : Exchange<Sample, 3, 3>;
}

}  // namespace

// Images take over each other's memory under locks of GLib, which ThreadSanitizer does not see.
__attribute__((no_sanitize_thread)) VImage Exchanged(const VImage& image, int bands) {
  VipsImage* const in = image.get_image();
  if (in->Bands != 3 && in->Bands != 4)
    throw std::runtime_error("its colours are of no known kind");
  const VImage result(vips_image_new());
  VipsImage* const out = result.get_image();
  // The source lives as long as the result.
  g_object_ref(in);
  vips_object_local(out, in);
  if (vips_image_pipelinev(out, VIPS_DEMAND_STYLE_THINSTRIP, in, nullptr) != 0)
    throw vips::VError();
  const auto exchange = in->BandFmt == VIPS_FORMAT_USHORT
                            ? ExchangeOf<std::uint16_t>(in->Bands, bands)
                            : ExchangeOf<std::uint8_t>(in->Bands, bands);
  out->Bands = bands;
  if (vips_image_generate(out, vips_start_one, exchange, vips_stop_one, in, nullptr) != 0)
    throw vips::VError();
  return result;
}
