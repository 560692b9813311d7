#include "portrait/window_minimum.h"

#include "support/operations.h"

namespace tintwerk::test {
namespace {

Bytes Plain(const Bytes& plane, int w, int h, std::int64_t radius) {
  Bytes result = plane;
  for (std::int64_t y = 0; y < h; ++y)
    for (std::int64_t x = 0; x < w; ++x)
      for (std::int64_t v = std::max<std::int64_t>(y - radius, 0);
           v <= std::min(y + radius, h - 1L); ++v)
        for (std::int64_t u = std::max<std::int64_t>(x - radius, 0);
             u <= std::min(x + radius, w - 1L); ++u)
          result[w * y + x] = std::min(result[w * y + x], plane[w * v + u]);
  return result;
}

TEST(WindowMinimum, IsTheLeastOfWhatTheWindowSees) {
  for (auto [width, height] : {std::pair{1, 1}, {1, 9}, {9, 1}, {7, 5}, {40, 23}, {131, 67}}) {
    const int w = width, h = height;
    Bytes plane = RandomBytes(std::size_t(w) * h, w);
    for (Byte& value : plane) value = Byte(value / 2 + 128);
    plane[plane.size() / 2] = 3;
    for (int radius : {-2, 0, 1, 2, 3, 7, 70, 2147483647}) {
      SCOPED_TRACE(testing::Message() << w << " x " << h << ", radius " << radius);
      const Bytes plain = Plain(plane, w, h, radius);
      OnEveryMachine([&] {
        ASSERT_EQ(plain, Guarded(plane, [&](Byte* own) {
                    ASSERT_TRUE(WindowMinimum(own, w, h, radius));
                  }));
      });
    }
  }
  ExpectRefusals(With(WindowMinimum, 2));
}

}  // namespace
}  // namespace tintwerk::test
