// The C interface against the entries that it stands for.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "support/failing_memory.h"
#include "support/image_files.h"
#include "support/operations.h"
#include "support/sanitized.h"
#include "support/traits.h"
#include "tintwerk/c.h"
#include "tintwerk/effect.h"

namespace tintwerk::test {
namespace {

wchar_t wideRoot[] = TINTWERK_RESOURCES;
const std::string kRoot = std::filesystem::path(wideRoot).string();

struct Look {
  const char* name;
  const char* title;
  const char* category;
  EffectEntry* entry;

  bool Draws() const { return Has(entry, Trait::DrawsRandomNumbers); }
};

const Look kLooks[] = {
#define TINTWERK_EFFECT(entry, category, title, description) \
  {#entry, title, #category, &CEffect::entry},
#include "tintwerk/effect_list.h"
};

struct Free {
  void operator()(tintwerk_prepared* look) const { tintwerk_prepared_free(look); }
};
using Prepared = std::unique_ptr<tintwerk_prepared, Free>;

Prepared Prepare(const char* look, int width, int height, const std::string& root = kRoot) {
  tintwerk_prepared* made = nullptr;
  EXPECT_EQ(tintwerk_prepare(look, width, height, root.c_str(), &made), TINTWERK_OK) << look;
  return Prepared(made);
}

Picture Through(EffectEntry* entry, Picture image) {
  EXPECT_EQ(entry(image.bytes.data(), image.width, image.height, wideRoot, nullptr, 0, 100), 1);
  return image;
}

// How a caller holds a picture: between its rows lie bytes of his own.
struct Layout {
  int format;
  int gap;
};

Bytes Laid(const Picture& picture, const Layout& layout) {
  Bytes buffer;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const unsigned char* const p = const_cast<Picture&>(picture).At(x, y);
      const bool swap = layout.format == TINTWERK_RGBA;
      for (const int c : {swap ? 2 : 0, 1, swap ? 0 : 2, 3}) buffer.push_back(p[c]);
    }
    if (y + 1 < picture.height) buffer.insert(buffer.end(), layout.gap, 0xCD);
  }
  return buffer;
}

TEST(CInterface, ListsTheLooksAndFindsThem) {
  ASSERT_EQ(tintwerk_look_count(), static_cast<int>(std::size(kLooks)));
  std::set<const tintwerk_category*> used;
  for (int i = 0; i < tintwerk_look_count(); ++i) {
    const tintwerk_look* const told = tintwerk_look_at(i);
    const Look& look = kLooks[i];
    ASSERT_STREQ(told->name, look.name);
    EXPECT_STREQ(told->title, look.title);
    EXPECT_STREQ(told->category->id, look.category);
    EXPECT_NE(*told->description, 0);
    EXPECT_EQ(told->draws_random_numbers != 0, look.Draws()) << look.name;
    used.insert(told->category);
    EXPECT_EQ(tintwerk_find_look(look.name), told);
    EXPECT_EQ(tintwerk_find_look(look.title), told);
  }
  for (int i = 0; i < tintwerk_category_count(); ++i)
    EXPECT_EQ(used.erase(tintwerk_category_at(i)), 1u) << tintwerk_category_at(i)->title;
  EXPECT_TRUE(used.empty());

  const tintwerk_look* const faded = tintwerk_find_look("Effect_HuiYi");
  ASSERT_TRUE(faded);
  for (const char* name : {"huiyi", "EFFECT_HUIYI", "faded-memory", " Faded  Memory!"})
    EXPECT_EQ(tintwerk_find_look(name), faded) << name;
  for (const char* name : {"", "effect_", "huiy", "huiyii", "\xff\xfe", "-"})
    EXPECT_EQ(tintwerk_find_look(name), nullptr) << name;
  EXPECT_EQ(tintwerk_find_look(nullptr), nullptr);
  for (const int number : {-1, tintwerk_look_count(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(tintwerk_look_at(number), nullptr);
    EXPECT_EQ(tintwerk_category_at(number), nullptr);
  }
  std::set<std::string> texts;
  for (int error = TINTWERK_OK; error <= TINTWERK_OUT_OF_MEMORY; ++error)
    texts.insert(tintwerk_error_text(error));
  for (const int error : {-1, TINTWERK_OUT_OF_MEMORY + 1})
    EXPECT_STREQ(tintwerk_error_text(error), "unknown error");
  EXPECT_EQ(texts.size(), TINTWERK_OUT_OF_MEMORY + 1u);
  EXPECT_FALSE(texts.contains("unknown error"));
}

TEST(CInterface, RefusesNonsenseAndLeavesTheBuffer) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr ptrdiff_t kFarthest = std::numeric_limits<ptrdiff_t>::max();
  const double nan = std::nan("");
  TemporaryFolder bare;
  const std::string noEffects = bare.Path().string();
  struct Case {
    tintwerk_error error;
    const char* look = "Effect_80S";
    int width = 5, height = 4;
    ptrdiff_t stride = 20;
    int format = TINTWERK_BGRA;
    double strength = 1;
    std::string root = kRoot;
  };
  const std::vector<Case> cases = {
      {.error = TINTWERK_NULL, .look = nullptr},
      {.error = TINTWERK_UNKNOWN_LOOK, .look = "no such look"},
      {.error = TINTWERK_UNKNOWN_LOOK, .look = ""},
      {.error = TINTWERK_BAD_SIZE, .width = 0},
      {.error = TINTWERK_BAD_SIZE, .height = 0},
      {.error = TINTWERK_BAD_SIZE, .width = -5},
      {.error = TINTWERK_BAD_SIZE, .width = -5, .height = -4},
      {.error = TINTWERK_BAD_SIZE, .width = 65536, .height = 65536, .stride = 4 * 65536},
      {.error = TINTWERK_BAD_SIZE, .width = kMost, .height = kMost, .stride = kFarthest},
      {.error = TINTWERK_BAD_STRIDE, .stride = 19},
      {.error = TINTWERK_BAD_STRIDE, .stride = 0},
      {.error = TINTWERK_BAD_STRIDE, .stride = -20},
      {.error = TINTWERK_BAD_STRIDE, .stride = kFarthest},
      {.error = TINTWERK_BAD_FORMAT, .format = -1},
      {.error = TINTWERK_BAD_FORMAT, .format = 2},
      {.error = TINTWERK_BAD_STRENGTH, .strength = nan},
      {.error = TINTWERK_BAD_STRENGTH, .strength = -0.001},
      {.error = TINTWERK_BAD_STRENGTH, .strength = 1.001},
      {.error = TINTWERK_BAD_STRENGTH, .strength = std::numeric_limits<double>::infinity()},
      {.error = TINTWERK_NO_RESOURCES, .root = noEffects},
      {.error = TINTWERK_NO_RESOURCES, .root = kRoot + "/nowhere"},
      {.error = TINTWERK_NO_RESOURCES, .root = ""},
      {.error = TINTWERK_NO_RESOURCES, .root = "\xc0\xaf"},      // no UTF-8
      {.error = TINTWERK_NO_RESOURCES, .root = "\xed\xa0\x80"},  // half of a surrogate pair
  };
  const Bytes before = RandomBytes(80, 1);
  Bytes buffer = before;
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "case " << &c - cases.data());
    EXPECT_EQ(tintwerk_apply(c.look, buffer.data(), c.width, c.height, c.stride, c.format,
                             c.strength, c.root.c_str(), nullptr, nullptr),
              c.error);
    EXPECT_EQ(buffer, before);
    const bool ofApplying = c.error >= TINTWERK_BAD_STRIDE && c.error <= TINTWERK_BAD_STRENGTH;
    if (ofApplying) {
      const Prepared look = Prepare("Effect_80S", c.width, c.height);
      EXPECT_EQ(tintwerk_prepared_apply(look.get(), buffer.data(), c.stride, c.format, c.strength,
                                        nullptr, nullptr),
                c.error);
      EXPECT_EQ(buffer, before);
    } else {
      auto* made = reinterpret_cast<tintwerk_prepared*>(buffer.data());
      EXPECT_EQ(tintwerk_prepare(c.look, c.width, c.height, c.root.c_str(), &made), c.error);
      EXPECT_EQ(made, nullptr);
    }
  }
  EXPECT_EQ(tintwerk_apply("Effect_80S", nullptr, 5, 4, 20, TINTWERK_BGRA, 1, kRoot.c_str(),
                           nullptr, nullptr),
            TINTWERK_NULL);
  EXPECT_EQ(tintwerk_prepare("Effect_80S", 5, 4, kRoot.c_str(), nullptr), TINTWERK_NULL);
  EXPECT_EQ(tintwerk_prepared_apply(nullptr, buffer.data(), 20, TINTWERK_BGRA, 1, nullptr, nullptr),
            TINTWERK_NULL);
  tintwerk_prepared_free(nullptr);
}

TEST(CInterface, GivesTheBytesOfTheEntryPlainOrPreparedFromAnyThread) {
  for (const auto& [width, height] : {std::pair{37, 23}, {23, 61}, {1, 1}, {160, 90}}) {
    if (kSanitized && height != 23) continue;
    const Picture image = RandomPicture(width, height, width);
    for (const Look& look : kLooks) {
      if (look.Draws()) continue;
      SCOPED_TRACE(testing::Message() << look.name << " at " << width << " x " << height);
      const Picture expected = Through(look.entry, image);
      Bytes plain = image.bytes;
      EXPECT_EQ(tintwerk_apply(look.name, plain.data(), width, height, 4 * width, TINTWERK_BGRA, 1,
                               kRoot.c_str(), nullptr, nullptr),
                TINTWERK_OK);
      EXPECT_TRUE(plain == expected.bytes);

      const Prepared prepared = Prepare(look.name, width, height);
      std::vector<Bytes> results(3, image.bytes);
      {
        std::vector<std::jthread> threads;
        for (Bytes& result : results)
          threads.emplace_back([&, width = width] {
            Bytes other = result;
            EXPECT_EQ(tintwerk_prepared_apply(prepared.get(), other.data(), 4 * width,
                                              TINTWERK_RGBA, 1, nullptr, nullptr),
                      TINTWERK_OK);
            EXPECT_EQ(tintwerk_prepared_apply(prepared.get(), result.data(), 4 * width,
                                              TINTWERK_BGRA, 1, nullptr, nullptr),
                      TINTWERK_OK);
          });
      }
      for (const Bytes& result : results) EXPECT_TRUE(result == expected.bytes);
    }
  }
}

TEST(CInterface, TakesEveryLayoutAndStrength) {
  for (const char* name :
       {"Effect_HuiYi", "Effect_VSCO_A2", "Effect_175BaiLu", "Effect_NewCaiQian"})
    for (const auto& [width, height] : {std::pair{33, 21}, {1, 9}}) {
      const Picture image = RandomPicture(width, height, 3);
      const Prepared prepared = Prepare(name, width, height);
      const auto* const look =
          std::find_if(std::begin(kLooks), std::end(kLooks),
                       [&](const Look& l) { return std::string(l.name) == name; });
      const Picture full = Through(look->entry, image);
      for (const double strength : {0.0, 0.37, 1 / 3.0, 1.0}) {
        Picture mixed = image;
        if (strength == 1)
          mixed = full;
        else
          CEffect::Effect_AlphaAdJust(mixed.bytes.data(), full.bytes.data(), width, height,
                                      strength);
        for (const int format : {TINTWERK_BGRA, TINTWERK_RGBA})
          for (const int gap : {0, 1, 12}) {
            SCOPED_TRACE(testing::Message() << name << ", " << width << ", " << strength << ", "
                                            << format << ", " << gap);
            const Layout layout{format, gap};
            const Bytes expected = Laid(mixed, layout);
            Bytes plain = Laid(image, layout), again = plain;
            EXPECT_EQ(tintwerk_apply(name, plain.data(), width, height, 4 * width + gap, format,
                                     strength, kRoot.c_str(), nullptr, nullptr),
                      TINTWERK_OK);
            EXPECT_TRUE(plain == expected);
            EXPECT_EQ(tintwerk_prepared_apply(prepared.get(), again.data(), 4 * width + gap, format,
                                              strength, nullptr, nullptr),
                      TINTWERK_OK);
            EXPECT_TRUE(again == expected);
          }
      }
    }
}

TEST(CInterface, NeedsEveryFileOnceAndOnlyToReadIt) {
  std::set<std::string> readers;
  std::ifstream list(kRoot + "/looks.tsv");
  for (std::string look, file; std::getline(list, look, '\t') && std::getline(list, file);)
    readers.insert(look);
  ASSERT_GT(readers.size(), 80u);

  TemporaryFolder empty;
  std::filesystem::create_directory(empty.Path() / "Effects");
  const std::string root = empty.Path().string();
  const Picture image = RandomPicture(20, 30);
  for (const Look& look : kLooks) {
    Bytes buffer = image.bytes;
    const bool reads = readers.contains(look.name);
    EXPECT_EQ(tintwerk_apply(look.name, buffer.data(), 20, 30, 80, TINTWERK_BGRA, 1, root.c_str(),
                             nullptr, nullptr),
              reads ? TINTWERK_MISSING_FILE : TINTWERK_OK)
        << look.name;
    EXPECT_EQ(buffer == image.bytes, reads) << look.name;
    tintwerk_prepared* made = nullptr;
    EXPECT_EQ(tintwerk_prepare(look.name, 20, 30, root.c_str(), &made),
              reads ? TINTWERK_MISSING_FILE : TINTWERK_OK);
    tintwerk_prepared_free(made);
  }

  // A folder with a name beyond ASCII, where nothing may be written, and nothing is once the look
  // is prepared.
  namespace fs = std::filesystem;
  const fs::path copy = empty.Path() / "\xc3\xa4\xe2\x82\xac\xf0\x9f\x8e\x9e";
  fs::create_directories(copy / "Effects");
  const fs::path table = copy / "Effects" / "zvkr_studio_2.eb";
  fs::copy_file(kRoot + "/Effects/zvkr_studio_2.eb", table);
  fs::permissions(table, fs::perms::owner_read);
  Bytes buffer = image.bytes;
  const Prepared prepared = Prepare("Effect_LengLan", 20, 30, copy.string());
  fs::remove_all(copy);
  EXPECT_EQ(tintwerk_prepared_apply(prepared.get(), buffer.data(), 80, TINTWERK_BGRA, 1, nullptr,
                                    nullptr),
            TINTWERK_OK);
  EXPECT_TRUE(buffer == Through(&CEffect::Effect_LengLan, image).bytes);
}

// A caller that follows the work and may stop it.
struct Listener {
  std::vector<float> positions;
  std::size_t stopAt = std::numeric_limits<std::size_t>::max();

  static int Hear(float position, void* user) {
    auto& self = *static_cast<Listener*>(user);
    self.positions.push_back(position);
    return self.positions.size() <= self.stopAt;
  }
};

TEST(CInterface, TellsPositionsAndStopsWithTheBufferAsItWas) {
  const Picture image = RandomPicture(37, 43);
  std::size_t most = 0;
  for (const Look& look : kLooks) {
    SCOPED_TRACE(look.name);
    const Prepared prepared = Prepare(look.name, 37, 43);
    const auto run = [&](Bytes& buffer, Listener& listener) {
      return tintwerk_prepared_apply(prepared.get(), buffer.data(), 4 * 37, TINTWERK_BGRA, 1,
                                     Listener::Hear, &listener);
    };
    Listener patient;
    Bytes whole = image.bytes;
    ASSERT_EQ(run(whole, patient), TINTWERK_OK);
    const auto& positions = patient.positions;
    ASSERT_GE(positions.size(), 2u);
    EXPECT_EQ(positions.front(), 0);
    EXPECT_EQ(positions.back(), 1);
    EXPECT_TRUE(std::is_sorted(positions.begin(), positions.end()));
    most = std::max(most, positions.size());
    for (std::size_t at = 0; at < positions.size(); ++at) {
      Listener hasty{{}, at};
      Bytes buffer = image.bytes;
      const bool done = at + 1 == positions.size();  // then it is too late
      EXPECT_EQ(run(buffer, hasty), done ? TINTWERK_OK : TINTWERK_STOPPED) << at;
      EXPECT_EQ(hasty.positions.size(), at + 1);
      EXPECT_TRUE(buffer == (done ? whole : image.bytes)) << at;
    }
  }
  EXPECT_GT(most, 20u);
}

TEST(CInterface, PreparedLooksDrawTheSameNumbersForEveryPicture) {
  const Picture image = SmoothPicture(64, 48);
  for (const Look& look : kLooks) {
    if (!look.Draws()) continue;
    const Prepared prepared = Prepare(look.name, 64, 48);
    Bytes first = image.bytes, second = image.bytes;
    for (Bytes* buffer : {&first, &second})
      EXPECT_EQ(tintwerk_prepared_apply(prepared.get(), buffer->data(), 4 * 64, TINTWERK_BGRA, 1,
                                        nullptr, nullptr),
                TINTWERK_OK);
    EXPECT_TRUE(first == second) << look.name;
    EXPECT_FALSE(first == image.bytes) << look.name;
  }
}

// The files are open: what a prepared look still asks memory for is little, and any of it may fail.
TEST(CInterface, MemoryThatRunsOutLeavesTheBufferAsItWas) {
  const Threads one(1);
  const Picture image = TiedPicture(37, 23);
  for (const Look& look : kLooks) {
    SCOPED_TRACE(look.name);
    const Prepared prepared = Prepare(look.name, 37, 23);
    for (const double strength : {1.0, 0.5}) {
      Bytes whole = image.bytes;
      ASSERT_EQ(tintwerk_prepared_apply(prepared.get(), whole.data(), 4 * 37, TINTWERK_BGRA,
                                        strength, nullptr, nullptr),
                TINTWERK_OK);
      for (std::int64_t at = 0, asked = 1; at < asked; ++at) {
        Bytes buffer = image.bytes;
        int error = -1;
        {
          const FailingMemory memory(at, Shortage::kOne);
          error = tintwerk_prepared_apply(prepared.get(), buffer.data(), 4 * 37, TINTWERK_BGRA,
                                          strength, nullptr, nullptr);
          asked = FailingMemory::Asked();
        }
        if (at >= asked) break;
        // Some operations do without what they asked for.
        EXPECT_TRUE(error == TINTWERK_OK || error == TINTWERK_OUT_OF_MEMORY) << error;
        EXPECT_TRUE(buffer == (error == TINTWERK_OK ? whole : image.bytes)) << at;
      }
    }
  }
  for (std::int64_t at = 0, asked = 1; at < asked; ++at) {
    auto* made = reinterpret_cast<tintwerk_prepared*>(&asked);
    int error = -1;
    {
      const FailingMemory memory(at, Shortage::kForGood);
      error = tintwerk_prepare("Effect_HuiYi", 37, 23, kRoot.c_str(), &made);
      asked = FailingMemory::Asked();
    }
    const Prepared owner(made);
    EXPECT_EQ(error == TINTWERK_OK, made != nullptr) << at;
    EXPECT_TRUE(error != TINTWERK_OK || at >= asked) << at;
  }
}

}  // namespace
}  // namespace tintwerk::test
