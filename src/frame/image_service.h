// Start and stop of the image service.
#pragma once

#include <cstdint>

#include "tintwerk/platform.h"

namespace tintwerk {

/// Starts the service; files can be decoded until it is stopped.
/// @param token receives what GdiplusShutdown wants back
Gdiplus::Status GdiplusStartup(std::uintptr_t* token);

/// Stops the service. A token other than the running service's does nothing.
void GdiplusShutdown(std::uintptr_t token);

bool ImageServiceRuns();

}  // namespace tintwerk
