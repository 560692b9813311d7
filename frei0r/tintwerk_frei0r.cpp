// The looks as a frei0r filter for video.
#include <tintwerk/c.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

// The header leaves it to the plug-in that its functions are seen, and are C.
#pragma GCC visibility push(default)
extern "C" {
#include <frei0r.h>
}
#pragma GCC visibility pop

namespace {

constexpr int kColourModel = F0R_COLOR_MODEL_BGRA8888;  // what looks work on without a copy

struct FreeLook {
  void operator()(tintwerk_prepared* look) const { tintwerk_prepared_free(look); }
};

/// By name or title, else by number.
const tintwerk_look* LookOf(const std::string& text) {
  if (const auto* const look = tintwerk_find_look(text.c_str())) return look;
  int number = -1;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end ? tintwerk_look_at(number) : nullptr;
}

/// A filter on one stream. Hosts use it from one thread at a time.
class Filter {
 public:
  Filter(int width, int height) : width_(width), height_(height) {}

  std::string look = tintwerk_look_at(0)->name;
  double strength = 1;

  void Give(const std::uint32_t* from, std::uint32_t* to) {
    if (to != from) std::memcpy(to, from, std::size_t{4} * width_ * height_);
    if (look != preparedFor_) Prepare();
    if (!prepared_) return;
    const double share = strength > 0 ? std::min(strength, 1.0) : 0;  // not a number: 0
    const auto error = tintwerk_prepared_apply(prepared_.get(), to, std::ptrdiff_t{4} * width_,
                                               TINTWERK_BGRA, share, nullptr, nullptr);
    if (error) Complain(tintwerk_error_text(error));
  }

 private:
  // Once for a look: frames of an unknown one pass as they are.
  void Prepare() {
    prepared_.reset();
    preparedFor_ = look;
    const tintwerk_look* const found = LookOf(look);
    tintwerk_prepared* made = nullptr;
    const auto error = tintwerk_prepare(found ? found->name : "", width_, height_, nullptr, &made);
    prepared_.reset(made);
    if (error) Complain(tintwerk_error_text(error));
  }

  void Complain(const char* what) const {
    std::fprintf(stderr, "tintwerk: '%s': %s\n", look.c_str(), what);
  }

  int width_, height_;
  std::string preparedFor_;
  std::unique_ptr<tintwerk_prepared, FreeLook> prepared_;
};

Filter& Of(f0r_instance_t instance) {
  return *static_cast<Filter*>(instance);
}

enum Parameter { kLook, kStrength, kParameters };

}  // namespace

int f0r_init() {
  return 1;
}
void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
  info->name = "Tintwerk";
  info->author = "Tintwerk";
  info->plugin_type = F0R_PLUGIN_TYPE_FILTER;
  info->color_model = kColourModel;
  info->frei0r_version = FREI0R_MAJOR_VERSION;
  info->major_version = 0;
  info->minor_version = 1;
  info->num_params = kParameters;
  info->explanation = "Film looks, old prints, light, drawings and other looks of photographs";
}

void f0r_get_param_info(f0r_param_info_t* info, int index) {
  if (index == kLook) {
    info->name = "look";
    info->type = F0R_PARAM_STRING;
    info->explanation = "Name, title or number of the look";
  } else if (index == kStrength) {
    info->name = "strength";
    info->type = F0R_PARAM_DOUBLE;
    info->explanation = "From 0, the picture as it is, to 1, the look";
  }
}

f0r_instance_t f0r_construct(unsigned width, unsigned height) try {
  return new Filter(static_cast<int>(width), static_cast<int>(height));
} catch (const std::bad_alloc&) {
  return nullptr;
}

void f0r_destruct(f0r_instance_t instance) {
  delete static_cast<Filter*>(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t value, int index) try {
  if (index == kLook) Of(instance).look = *static_cast<f0r_param_string*>(value);
  if (index == kStrength) Of(instance).strength = *static_cast<f0r_param_double*>(value);
} catch (const std::bad_alloc&) {  // the old look stays
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t value, int index) {
  if (index == kLook) *static_cast<f0r_param_string*>(value) = Of(instance).look.data();
  if (index == kStrength) *static_cast<f0r_param_double*>(value) = Of(instance).strength;
}

void f0r_update(f0r_instance_t instance, double, const std::uint32_t* from, std::uint32_t* to) try {
  Of(instance).Give(from, to);
} catch (const std::bad_alloc&) {
  std::fputs("tintwerk: not enough memory\n", stderr);
}
