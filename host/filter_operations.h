// The operations of the library that a person calls by hand.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "picture_io.h"
#include "tintwerk/progress.h"

/// A number that an operation takes; it makes the option, its check and its help.
struct Parameter {
  std::string_view name;
  std::string_view meaning;  ///< with the unit
  double low, high, standard;
};

struct FilterOperation {
  std::string_view name;
  std::string_view description;
  std::vector<Parameter> parameters;
  /// Works a picture in place. @param values one for each parameter, in order. @return false if it
  /// failed
  bool (*run)(const Picture& picture, const double* values, CObjProgress* progress);
};

std::span<const FilterOperation> AllFilterOperations();
