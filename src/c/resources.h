// Where the support files lie, as the C interface is told it.
#pragma once

#include <optional>
#include <string>

namespace tintwerk {

/// The root that looks take.
/// @param folder in UTF-8; null for the folder that is installed with the library
/// @return nothing if that is no text or there is no folder Effects in it
/// @throw std::bad_alloc
std::optional<std::wstring> ResourceRoot(const char* folder);

}  // namespace tintwerk
