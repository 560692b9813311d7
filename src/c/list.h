// The looks behind the records of the C interface.
#pragma once

#include "looks/recipe.h"
#include "tintwerk/c.h"

namespace tintwerk {

struct ListedLook {
  tintwerk_look told;
  Recipe* recipe;
};

/// Null if there is none, or no text.
const ListedLook* FindLook(const char* nameOrTitle);

}  // namespace tintwerk
