// Everything that a host sees.
#pragma once

#include "tintwerk/color_space.h"
#include "tintwerk/cstring.h"
#include "tintwerk/cube_container.h"
#include "tintwerk/effect.h"
#include "tintwerk/math_define.h"
#include "tintwerk/pixel_process.h"
#include "tintwerk/platform.h"
#include "tintwerk/progress.h"
#include "tintwerk/selective_color.h"
#include "tintwerk/sfdsp.h"
#include "tintwerk/trilinear.h"
