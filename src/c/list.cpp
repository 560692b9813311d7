#include "c/list.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tintwerk {
namespace {

constexpr tintwerk_category kCategories[] = {
#define TINTWERK_CATEGORY(id, title) {#id, title},
#include "tintwerk/effect_list.h"
};

constexpr std::string_view kRandom[] = {
#define TINTWERK_TRAIT(entry, trait) \
  std::string_view(#trait) == "DrawsRandomNumbers" ? std::string_view(#entry) : "",
#include "tintwerk/effect_list.h"
};

constexpr const tintwerk_category* CategoryOf(std::string_view id) {
  return std::find_if(std::begin(kCategories), std::end(kCategories),
                      [id](const tintwerk_category& category) { return id == category.id; });
}

constexpr bool DrawsRandomNumbers(std::string_view name) {
  return std::find(std::begin(kRandom), std::end(kRandom), name) != std::end(kRandom);
}

constexpr ListedLook kLooks[] = {
#define TINTWERK_EFFECT(entry, category, title, description)                                \
  {{#entry, title, CategoryOf(#category), description, DrawsRandomNumbers(#entry) ? 1 : 0}, \
   Recipe_##entry},
#include "tintwerk/effect_list.h"
};

// A name or title without all that does not count.
class Key {
 public:
  explicit Key(std::string_view text) : rest_(text) {
    constexpr std::string_view kPrefix = "effect";
    Key whole = *this;
    std::size_t matched = 0;
    while (matched < kPrefix.size() && whole.Next() == kPrefix[matched]) ++matched;
    if (matched == kPrefix.size()) rest_ = whole.rest_;
  }

  /// The next letter or digit, in lower case; 0 at the end. The locale has no say.
  char Next() {
    for (; !rest_.empty(); rest_.remove_prefix(1)) {
      char c = rest_.front();
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
      if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
        rest_.remove_prefix(1);
        return c;
      }
    }
    return 0;
  }

  bool operator==(Key other) const {
    Key own = *this;
    for (;;) {
      const char c = own.Next();
      if (c != other.Next()) return false;
      if (c == 0) return true;
    }
  }

 private:
  std::string_view rest_;
};

template <class Record, std::size_t N>
const Record* At(const Record (&records)[N], int number) {
  return number >= 0 && number < static_cast<int>(N) ? records + number : nullptr;
}

}  // namespace

const ListedLook* FindLook(const char* nameOrTitle) {
  if (!nameOrTitle) return nullptr;
  const Key key(nameOrTitle);
  for (const ListedLook& look : kLooks)
    if (key == Key(look.told.name) || key == Key(look.told.title)) return &look;
  return nullptr;
}

}  // namespace tintwerk

using namespace tintwerk;

int tintwerk_look_count(void) {
  return static_cast<int>(std::size(kLooks));
}

const tintwerk_look* tintwerk_look_at(int number) {
  const ListedLook* const look = At(kLooks, number);
  return look ? &look->told : nullptr;
}

const tintwerk_look* tintwerk_find_look(const char* name_or_title) {
  const ListedLook* const look = FindLook(name_or_title);
  return look ? &look->told : nullptr;
}

int tintwerk_category_count(void) {
  return static_cast<int>(std::size(kCategories));
}

const tintwerk_category* tintwerk_category_at(int number) {
  return At(kCategories, number);
}
