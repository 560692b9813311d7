#include "pixel/tone_curve.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <numeric>
#include <vector>

#include "frame/image.h"
#include "pixel/truncate.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/sfdsp.h"

namespace tintwerk {
namespace {

unsigned char* IdentityTable() {
  auto* table = static_cast<unsigned char*>(std::malloc(256));
  if (table) std::iota(table, table + 256, static_cast<unsigned char>(0));
  return table;
}

// The control values of the B-spline that passes through the points' y. Right sides and results are
// whole numbers, truncated at every step.
void FindControlValues(const CurvePoint* points, int n, int* control) {
  control[0] = points[0].y;
  control[n - 1] = points[n - 1].y;
  if (n == 3) {
    control[1] = (6 * points[1].y - points[0].y - points[2].y) >> 2;
    return;
  }
  std::vector<double> diagonal(n, 4.0);
  std::vector<int> right(n);
  for (int i = 1; i <= n - 2; ++i) right[i] = 6 * points[i].y;
  right[1] -= points[0].y;
  right[n - 2] -= points[n - 1].y;
  for (int i = 2; i <= n - 2; ++i) {
    const double m = 1.0 / diagonal[i - 1];
    diagonal[i] -= m * 1.0;
    right[i] = Truncate(right[i] - right[i - 1] * m);
  }
  control[n - 2] = Truncate(right[n - 2] / diagonal[n - 2]);
  for (int i = n - 3; i >= 1; --i)
    control[i] = Truncate((right[i] - control[i + 1] * 1.0) / diagonal[i]);
}

}  // namespace

SFCurve::SFCurve()
    : table1(IdentityTable()),
      table2(IdentityTable()),
      table3(IdentityTable()),
      table4(IdentityTable()),
      table5(IdentityTable()) {}

SFCurve::~SFCurve() {
  for (unsigned char** table : {&table1, &table2, &table3, &table4, &table5}) {
    std::free(*table);
    *table = nullptr;
  }
}

void SFCurve::BuildTable(const CurvePoint* points, int count, unsigned char* table) {
  if (!points || !table || count < 3) return;
  const CurvePoint& first = points[0];
  const CurvePoint& last = points[count - 1];
  for (int x = 0; x < std::min(first.x, 256); ++x) table[x] = static_cast<unsigned char>(first.y);
  for (int x = std::max(last.x, 0); x < 256; ++x) table[x] = static_cast<unsigned char>(last.y);

  // Three points need no memory, so that tables of a curve's middle can always be had.
  int few[3];
  std::vector<int> many(count > 3 ? count : 0);
  int* const control = count > 3 ? many.data() : few;
  FindControlValues(points, count, control);
  int at = 0;
  for (int i = 1; i < count; ++i) {
    const int from = points[i - 1].y, to = points[i].y;
    const int dx = points[i].x == points[i - 1].x ? 1 : std::abs(points[i].x - points[i - 1].x);
    const int c1 = Truncate(static_cast<float>(2 * control[i - 1] + control[i]) / 3.0f);
    const int c2 = Truncate(static_cast<float>(control[i - 1] + 2 * control[i]) / 3.0f);
    for (int s = 0; s < dx && at < 256; ++s) {
      const float t = static_cast<float>(s) / static_cast<float>(dx);
      const float u = 1 - t;
      const float y = powf(u, 3) * from + u * 3 * u * t * c1 + u * 3 * t * t * c2 + powf(t, 3) * to;
      table[at++] = ClampToByte(y);
    }
  }
}

bool RunTables(unsigned char* pixels, int width, int height, const ToneTables& tables,
               const RowProgress& rows) {
  const std::int64_t pitch = std::max(width, 0);
  const unsigned char *blue = tables.blue.data(), *green = tables.green.data(),
                      *red = tables.red.data();
  return ForEachRow(rows, height, [=](std::int64_t y) {
    ApplyTables(pixels + 4 * pitch * y, pitch, blue, green, red);
  });
}

}  // namespace tintwerk

void SFDSP::GeneCurveMiddle(unsigned char* table, int x, int y) {
  const tintwerk::CurvePoint points[] = {
      {0, 0}, {std::clamp(x, 0, 255), std::clamp(y, 0, 255)}, {255, 255}};
  tintwerk::SFCurve().BuildTable(points, 3, table);
}

void SFDSP::Lut(unsigned char* pixels, const unsigned char* table, int width, int height) {
  if (!tintwerk::IsWorkable(pixels, width, height) || !table) return;
  tintwerk::ApplyTable(pixels, *tintwerk::PixelCount(width, height), table);
}

void CPixelProcess::Lut(unsigned char* pixels, int width, int height, const unsigned char* table,
                        CObjProgress* progress, int progressLow, int progressHigh) {
  if (!tintwerk::IsWorkable(pixels, width, height) || !table) return;
  const std::int64_t pitch = std::max(width, 0);
  tintwerk::ForEachRow(progress, progressLow, progressHigh, height, [=](std::int64_t y) {
    tintwerk::ApplyTable(pixels + 4 * pitch * y, pitch, table);
  });
}
