// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <clocale>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>

#include "platform/UserEnvironment.h"

namespace platen {
namespace {

/// Sets variables of the environment, or takes them out, until it goes out of scope.
class ChangedEnvironment {
 public:
  using Changes = std::map<std::string, std::optional<std::string>>;

  explicit ChangedEnvironment(const Changes& changes) {
    for (const auto& [name, value] : changes) {
      const char* before = std::getenv(name.c_str());
      before_[name] = before == nullptr ? std::nullopt : std::optional<std::string>(before);
      apply(name, value);
    }
  }
  ~ChangedEnvironment() {
    for (const auto& [name, value] : before_) apply(name, value);
  }
  ChangedEnvironment(const ChangedEnvironment&) = delete;
  ChangedEnvironment& operator=(const ChangedEnvironment&) = delete;

 private:
  static void apply(const std::string& name, const std::optional<std::string>& value) {
    if (value) {
      setenv(name.c_str(), value->c_str(), 1);
    } else {
      unsetenv(name.c_str());
    }
  }

  Changes before_;
};

TEST(UserEnvironment, LoginNameIsThatOfTheUserDatabaseWhateverTheEnvironmentSays) {
  const ChangedEnvironment changed(
      ChangedEnvironment::Changes{{"USER", "somebody"}, {"LOGNAME", "somebody"}});
  const passwd* entry = getpwuid(geteuid());
  EXPECT_EQ(loginName(), entry != nullptr ? entry->pw_name : std::to_string(geteuid()));
}

TEST(UserEnvironment, HomeIsWhereTheEnvironmentSaysElseTheUserDatabase) {
  {
    const ChangedEnvironment changed(ChangedEnvironment::Changes{{"HOME", "/tmp/some home"}});
    EXPECT_EQ(homeDirectory(), "/tmp/some home");
  }
  const passwd* entry = getpwuid(geteuid());
  const std::string recorded = entry != nullptr ? entry->pw_dir : "/";
  for (const std::optional<std::string>& value :
       {std::optional<std::string>(), std::optional<std::string>(""),
        std::optional<std::string>("relative/path")}) {
    const ChangedEnvironment changed(ChangedEnvironment::Changes{{"HOME", value}});
    EXPECT_EQ(homeDirectory(), recorded) << value.value_or("(none)");
  }
}

TEST(UserEnvironment, SplitsLocaleIdentifiers) {
  const struct {
    const char* identifier;
    LocaleParts parts;
  } kCases[] = {
      {"en_US", {"en", "", "US"}},
      {"pt_BR", {"pt", "", "BR"}},
      {"ja", {"ja", "", ""}},
      {"de", {"de", "", ""}},
      {"zh_Hans_CN", {"zh", "Hans", "CN"}},
      {"zh_Hant", {"zh", "Hant", ""}},
      {"zh-hANS-cn", {"zh", "Hans", "CN"}},
      {"EN_us", {"en", "", "US"}},
      {"es_419", {"es", "", "419"}},
      {"haw_US", {"haw", "", "US"}},
      {"en_US.UTF-8@euro", {"en", "", "US"}},
      {"ca_ES@valencia", {"ca", "", "ES"}},
      {"en_US_POSIX", {"en", "", "US"}},
      {"sl_rozaj", {"sl", "", ""}},
      {"_US", {"", "", "US"}},
      {"", {"", "", ""}},
      {"e", {"", "", ""}},
      {"german", {"", "", ""}},
      {"e1_U2", {"", "", ""}},
      {"../../etc", {"", "", ""}},
      {"_", {"", "", ""}},
  };
  for (const auto& [identifier, parts] : kCases) {
    EXPECT_EQ(componentsOf(identifier), parts) << identifier;
  }
}

TEST(UserEnvironment, TakesTheProgramsLocaleFirstThenTheEnvironmentInItsOrder) {
  EXPECT_EQ(localeIdentifierFor({"pt_BR.UTF-8", "de_DE", "fr_FR", "ja_JP"}), "pt_BR");
  EXPECT_EQ(localeIdentifierFor({"C", "de_DE.UTF-8", "fr_FR", "ja_JP"}), "de_DE");
  EXPECT_EQ(localeIdentifierFor({"C.UTF-8", "", "fr_FR@euro", "ja_JP"}), "fr_FR");
  EXPECT_EQ(localeIdentifierFor({"POSIX", "", "", "ja"}), "ja");
  EXPECT_EQ(localeIdentifierFor({"", "", "", "zh_Hans_CN.GB18030"}), "zh_Hans_CN");
}

TEST(UserEnvironment, TakesEnglishForTheNeutralLocaleAndForNonsense) {
  EXPECT_EQ(localeIdentifierFor({}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "", "", ""}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "C", "de_DE", "de_DE"}), "en");  // LC_ALL is set: to C
  EXPECT_EQ(localeIdentifierFor({"C", "C.UTF-8", "", "de_DE"}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "", "POSIX", ""}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "", "", "/some/path"}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "", "", "12345"}), "en");
  EXPECT_EQ(localeIdentifierFor({"C", "", "", std::string(100'000, 'x')}), "en");
}

TEST(UserEnvironment, ReadsTheEnvironmentAtEachCallAndLeavesTheLocaleAlone) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  {
    const ChangedEnvironment changed(ChangedEnvironment::Changes{
        {"LC_ALL", std::nullopt}, {"LC_MESSAGES", "pt_BR.UTF-8"}, {"LANG", "de_DE.UTF-8"}});
    EXPECT_EQ(currentLocaleIdentifier(), "pt_BR");
  }
  {
    const ChangedEnvironment changed(ChangedEnvironment::Changes{
        {"LC_ALL", "fr_CA"}, {"LC_MESSAGES", "pt_BR"}, {"LANG", "de_DE"}});
    EXPECT_EQ(currentLocaleIdentifier(), "fr_CA");
  }
  {
    const ChangedEnvironment changed(ChangedEnvironment::Changes{
        {"LC_ALL", std::nullopt}, {"LC_MESSAGES", std::nullopt}, {"LANG", std::nullopt}});
    EXPECT_EQ(currentLocaleIdentifier(), "en");
  }
  EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
}

}  // namespace
}  // namespace platen
