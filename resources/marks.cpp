#include "marks.h"

namespace tintwerk::paint {

void LayHairs(Canvas& canvas, Dice& dice, int count) {
  for (int i = 0; i < count; ++i) {
    double x = dice.Between(0, canvas.Right());
    double y = dice.Between(0, 1);
    double dx = dice.Between(-1, 1);
    double dy = dice.Between(-1, 1);
    const double bend = dice.Between(-0.025, 0.025);
    const double light = dice.Between(0.04, 0.1);
    const double length = dice.Between(0.01, 0.05);
    for (double way = 0; way < length; way += 0.0008) {
      canvas.Add({x, y, 0.0014, light * Rgb{1, 0.97, 0.9}, 0});
      const double norm = 0.0008 / Distance(dx, dy);
      dx *= norm, dy *= norm;
      x += dx, y += dy;
      const double turned = dx - dy * bend;
      dy += dx * bend;
      dx = turned;
    }
  }
}

}  // namespace tintwerk::paint
