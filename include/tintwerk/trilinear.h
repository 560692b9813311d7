// 3-D colour lookup.
#pragma once

#include "tintwerk/export.h"

/// Colour lookups through a cube with trilinear interpolation, all static.
class TINTWERK_API CTrilinear {};
