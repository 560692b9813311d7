// Light leaks: what a camera that does not close well lets onto the film. All are black where no
// light fell, brightest at an edge, and leave the middle to the subject.
#pragma once

#include "picture.h"

namespace tintwerk::paint {

Picture OrangeEdgeLeak();       // along the left edge, from red over orange to yellow
Picture GoldenCornerLeak();     // golden from the upper right corner, with faint beams
Picture RedBandLeak();          // a red band along the top, as from the hinge of the back
Picture MagentaDiagonalLeak();  // a rose streak across the lower right corner
Picture BurntEndLeak();         // the end of the roll: burnt pale on the right, exposed twice
Picture PeachCornerLeak();      // a wide peach haze from the lower left corner, rose above
Picture BokehLeak();            // lamps out of focus along the right and the lower edge

}  // namespace tintwerk::paint
