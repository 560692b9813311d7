// The operations of the library that the command offers as filters.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "picture_io.h"
#include "tintwerk/progress.h"

/// A number that an operation takes. The option, its range check and its help are made from it.
struct Parameter {
  std::string_view name;
  std::string_view meaning;  ///< with the unit
  double low, high, standard;
  bool whole = true;                             ///< it takes whole numbers only
  std::span<const std::string_view> names = {};  ///< of the values from 0 on, if they have names
};

struct FilterOperation {
  std::string_view name;
  std::string_view description;
  std::vector<Parameter> parameters;
  /// Applies the operation in place. @param values one for each parameter, in order. @return false on
  /// failure
  bool (*run)(const Picture& picture, const double* values, CObjProgress* progress);
};

std::span<const FilterOperation> AllFilterOperations();
