// The traits of the list of effects.
#pragma once

#include <algorithm>
#include <iterator>
#include <utility>

#include "tintwerk/effect.h"

namespace tintwerk::test {

enum class Trait {
  DrawsRandomNumbers,
  WritesAlpha,
  Reports,
  ReportsOwnScale,
  StopKeepsImage,
  StopKeepsStages,
  StopKeepsRows,
  SucceedsWithoutFiles
};

inline bool Has(EffectEntry* entry, Trait trait) {
  static const std::pair<EffectEntry*, Trait> kTraits[] = {
#define TINTWERK_TRAIT(entry, trait) {&CEffect::entry, Trait::trait},
#include "tintwerk/effect_list.h"
  };
  return std::count(std::begin(kTraits), std::end(kTraits), std::pair{entry, trait}) > 0;
}

}  // namespace tintwerk::test
