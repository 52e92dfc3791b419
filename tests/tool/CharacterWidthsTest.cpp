// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include <clocale>
#include <cwchar>
#include <ostream>
#include <vector>

#include "tools/CharacterWidths.h"

// The widths of the tables beside those of the C library, which knows them on its own.

namespace platen::test {
namespace {

using ::testing::ElementsAre;

constexpr wchar_t kLast = 0x2FFFF;

// The locale of a scope, on this thread.
class InLocale {
 public:
  explicit InLocale(const char* name) : locale_(::newlocale(LC_CTYPE_MASK, name, nullptr)) {
    before_ = ::uselocale(locale_);
  }
  ~InLocale() {
    ::uselocale(before_);
    if (locale_ != nullptr) {
      ::freelocale(locale_);
    }
  }
  InLocale(const InLocale&) = delete;
  InLocale& operator=(const InLocale&) = delete;

  bool isThere() const { return locale_ != nullptr; }

 private:
  locale_t locale_;
  locale_t before_;
};

// Codes from one to another of which each is so wide here and there.
struct Difference {
  wchar_t first;
  wchar_t last;
  int here;
  int there;

  bool operator==(const Difference&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Difference& one) {
  return out << std::hex << "U+" << static_cast<unsigned>(one.first) << " to U+"
             << static_cast<unsigned>(one.last) << std::dec << ": " << one.here << ", and "
             << one.there << " by the C library";
}

void add(std::vector<Difference>& differences, const Difference& one) {
  const bool goesOn = !differences.empty() && differences.back().last == one.first - 1 &&
                      differences.back().here == one.here && differences.back().there == one.there;
  if (goesOn) {
    differences.back().last = one.last;
  } else {
    differences.push_back(one);
  }
}

// The C library gives -1 for control characters and for what is no character in its Unicode.
TEST(CharacterWidths, AreThoseOfTheCLibrary) {
  const InLocale utf8("C.UTF-8");
  ASSERT_TRUE(utf8.isThere());
  if (::wcwidth(0x1FAE8) >= 0) {
    GTEST_SKIP() << "the C library knows Unicode 15: the tables have to be made anew for it";
  }
  int compared = 0;
  std::vector<Difference> differences;
  for (wchar_t code = 1; code <= kLast; ++code) {
    const int there = ::wcwidth(code);
    const int here = static_cast<int>(tool::columnsOf(static_cast<char32_t>(code)));
    compared += there >= 0 ? 1 : 0;
    if (there >= 0 && here != there) {
      add(differences, {code, code, here, there});
    }
  }
  EXPECT_GT(compared, 140'000);
  // Circled numbers on black, which Annex 11 has as ambiguous, and hexagrams, neutral before
  // Unicode 16.
  EXPECT_THAT(differences, ElementsAre(Difference{0x3248, 0x324F, 1, 2},  //
                                       Difference{0x4DC0, 0x4DFF, 1, 2}));
}

// Where the C library says nothing.
TEST(CharacterWidths, AreOneForWhatIsNoCharacterUnlessItsBlockIsOfIdeographs) {
  EXPECT_EQ(tool::columnsOf(0xFFFFFFFF), 1U);
  EXPECT_EQ(tool::columnsOf(0xD800), 1U);
  EXPECT_EQ(tool::columnsOf(0x378), 1U);
  EXPECT_EQ(tool::columnsOf(0x2FA1E), 2U);
  EXPECT_EQ(tool::columnsOf(0x3FFFD), 2U);
  EXPECT_EQ(tool::columnsOf(0x3FFFE), 1U);
  EXPECT_EQ(tool::columnsOf(0xE0100), 0U);
}

}  // namespace
}  // namespace platen::test
