// What looks leave when memory runs out or the host wants them stopped.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "pixel/progress_recorder.h"
#include "support/failing_memory.h"
#include "support/operations.h"
#include "support/small_tree.h"
#include "support/traits.h"

namespace tintwerk::test {
namespace {

struct Look {
  const char* name;
  EffectEntry* entry;
};

#define TINTWERK_EFFECT(entry, category, title, description) Look{#entry, &CEffect::entry},
constexpr Look kLooks[] = {
#include "tintwerk/effect_list.h"
};

ResourceRoot& Tree() {
  return SmallTree(std::filesystem::path(TINTWERK_RESOURCES) / "Effects");
}

// Every allocation in turn: nothing is thrown, and the image is all worked or as it was.
// @param run run(image)
// @param spared what else the operation may give 1 with
template <class Run>
void ExpectSound(const char* name, const Run& run, std::vector<Picture> spared = {}) {
  SCOPED_TRACE(name);
  const Threads one(1);
  const Picture image = TiedPicture(37, 23);
  spared.push_back(image);
  ASSERT_EQ(run(spared.back()), 1);
  for (const Shortage shortage : {Shortage::kOne, Shortage::kForGood})
    for (std::int64_t at = 0, asked = 1; asked > at; ++at) {
      Picture result = image;
      int code = -1;
      try {
        const FailingMemory memory(at, shortage);
        code = run(result);
        asked = FailingMemory::Asked();
      } catch (...) {
        FAIL() << "throws after " << at << " allocations";
      }
      const bool failed = asked > at;
      if (failed) asked = at + 2;  // there may be more behind the one that failed
      const bool sound = code == 0
                             ? failed && result == image
                             : !failed || std::count(spared.begin(), spared.end(), result) > 0;
      EXPECT_TRUE(sound) << "gives " << code << " after " << at << " allocations";
    }
}

void ExpectTraits(const Look& look) {
  SCOPED_TRACE(look.name);
  constexpr int kLow = 1007, kHigh = 1093;
  EffectEntry* const entry = look.entry;
  const Threads one(1);
  const Picture image = TiedPicture(37, 43);
  ResourceRoot& root = Tree();
  Picture whole = image;
  ProgressRecorder host;
  ASSERT_EQ(root.Run(entry, whole, &host, kLow, kHigh), 1);
  const bool within = std::all_of(host.positions.begin(), host.positions.end(),
                                  [](float at) { return at >= kLow && at <= kHigh; });
  EXPECT_EQ(Has(entry, Trait::Reports), within && !host.positions.empty());
  EXPECT_EQ(Has(entry, Trait::ReportsOwnScale), !within);

  constexpr Trait kStops[] = {Trait::StopKeepsImage, Trait::StopKeepsStages, Trait::StopKeepsRows};
  std::set<Trait> marked, seen;
  for (const Trait trait : kStops)
    if (Has(entry, trait)) marked.insert(trait);
  for (int at = 0; at < host.questions; ++at) {
    Picture result = image;
    ProgressRecorder stopping;
    stopping.stopAt = at;
    const int code = root.Run(entry, result, &stopping, kLow, kHigh);
    seen.insert(code != 0         ? Trait::StopKeepsRows
                : result == image ? Trait::StopKeepsImage
                                  : Trait::StopKeepsStages);
    const bool rowsAlone = marked == std::set{Trait::StopKeepsRows};
    if (code == 0 || rowsAlone) {
      EXPECT_EQ(stopping.questions, at + 1);
    }
    if (!rowsAlone) continue;
    const std::size_t done = std::size_t{4} * 37 * (43 / 20 * at + 1);  // bytes of the rows above
    const auto same = [&](const Picture& other, std::size_t from, std::size_t to) {
      return std::equal(result.bytes.begin() + from, result.bytes.begin() + to,
                        other.bytes.begin() + from);
    };
    EXPECT_TRUE(same(image, done, result.bytes.size())) << "stopped at " << at;
    EXPECT_TRUE(same(whole, 0, done) || Has(entry, Trait::DrawsRandomNumbers));
  }
  EXPECT_TRUE(seen == marked);
}

TEST(Boundary, MemoryThatRunsOutLeavesTheImageDoneOrAsItWas) {
  ResourceRoot& root = Tree();
  const auto with = [&](EffectEntry* entry) {
    return [=, &root](Picture& image) { return root.Run(entry, image); };
  };
  for (const Look& look : kLooks) {
    std::vector<Picture> spared;
    if (Has(look.entry, Trait::SucceedsWithoutFiles)) spared.push_back(TiedPicture(37, 23));
    if (look.entry == static_cast<EffectEntry*>(&CEffect::Effect_NewCaiQian))  // draws twice
      for (const auto& part :
           {with(&CEffect::Effect_XieShengSuMiaoEx), with(&CEffect::Effect_CaiQian)})
        part(spared.emplace_back(TiedPicture(37, 23)));
    ExpectSound(look.name, with(look.entry), spared);
  }
  using PartEntry = int(Byte*, int, int, void*, _ZV_2D_RECT*, CObjProgress*, int, int);
  for (PartEntry* entry : std::initializer_list<PartEntry*>{&CEffect::Effect_GuDianSuMiaoEx,
                                                            &CEffect::Effect_XieShengSuMiaoEx})
    ExpectSound("a part of a picture", [&](Picture& image) {
      _ZV_2D_RECT rect{3, 2, 37, 23};
      return entry(image.bytes.data(), 50, 40, root.Path(), &rect, nullptr, 0, 100);
    });
  // Cubes that cannot be read are left out.
  const auto steps = [&](Picture& image, int light, int contrast) {
    return CEffect::LSC_Class(image.bytes.data(), 37, 23, light, contrast, 0, root.Path(), nullptr,
                              0, 100);
  };
  std::vector<Picture> spared(3, TiedPicture(37, 23));
  steps(spared[0], 9, 0);
  steps(spared[1], 0, 5);
  ExpectSound(
      "LSC_Class", [&](Picture& image) { return steps(image, 9, 5); }, spared);
}

TEST(Boundary, HostIsToldAndAskedAsTraitsSay) {
  for (const Look& look : kLooks) ExpectTraits(look);
}

#ifdef __linux__
// Threads that a region starts stay in the pool of the thread that entered it.
TEST(Boundary, OneThreadSetByTheHostBindsEveryLook) {
  const auto count = [] {
    using Tasks = std::filesystem::directory_iterator;
    return std::distance(Tasks("/proc/self/task"), Tasks());
  };
  ResourceRoot& root = Tree();
  std::thread([&] {
    omp_set_num_threads(1);
    const auto before = count();
    for (const Look& look : kLooks) {
      Picture image = TiedPicture(37, 23);
      EXPECT_EQ(root.Run(look.entry, image), 1) << look.name;
      ASSERT_EQ(count(), before) << look.name;
    }
  }).join();
}
#endif

}  // namespace
}  // namespace tintwerk::test
