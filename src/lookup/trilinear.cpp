// trilinear
