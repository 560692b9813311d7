// The running minimum of a byte plane: erosion by a square.
#pragma once

namespace tintwerk {

/// Every sample of a plane becomes the least value of the (2 x radius + 1)^2 samples around it, of
/// those that lie within the plane. Made for small radii: the cost of a sample grows with them.
/// @param radius less than 1 leaves the plane as it is
/// @return false, and the plane is as it was, if it is null or too large, or for want of memory
bool WindowMinimum(unsigned char* plane, int width, int height, int radius);

}  // namespace tintwerk
