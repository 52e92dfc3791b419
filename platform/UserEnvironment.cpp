// SPDX-License-Identifier: Apache-2.0

#include "platform/UserEnvironment.h"

#include <pwd.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

#include "platform/CaseFold.h"

namespace platen::inline v0 {
namespace {

constexpr std::size_t kLargestUserEntry = std::size_t{1} << 20U;
constexpr std::string_view kNeutralLocale = "en";

struct UserEntry {
  std::string name;
  std::string home;
};

std::string textOrEmpty(const char* text) { return text == nullptr ? std::string() : text; }

/// The C library cannot tell how large an entry may be; it asks to be given more.
std::optional<UserEntry> currentUserEntry() {
  for (std::size_t size = 1024; size <= kLargestUserEntry;) {
    std::vector<char> buffer(size);
    passwd entry{};
    passwd* found = nullptr;
    const int error = getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found);
    if (error == EINTR) continue;
    if (error == ERANGE) {
      size *= 2;
      continue;
    }
    if (error != 0 || found == nullptr) return std::nullopt;
    return UserEntry{textOrEmpty(found->pw_name), textOrEmpty(found->pw_dir)};
  }
  return std::nullopt;
}

bool isLetter(char octet) noexcept { return asciiLower(octet) >= 'a' && asciiLower(octet) <= 'z'; }
bool isDigit(char octet) noexcept { return octet >= '0' && octet <= '9'; }
char asciiUpper(char octet) noexcept {
  return octet >= 'a' && octet <= 'z' ? static_cast<char>(octet - 'a' + 'A') : octet;
}

bool isLetters(std::string_view word) noexcept {
  return std::all_of(word.begin(), word.end(), isLetter);
}
/// ISO 639 codes only: "german" is the alias of a locale, not a language that a printer knows.
bool isLanguage(std::string_view word) noexcept {
  return word.size() >= 2 && word.size() <= 3 && isLetters(word);
}
bool isScript(std::string_view word) noexcept { return word.size() == 4 && isLetters(word); }
bool isCountry(std::string_view word) noexcept {
  return (word.size() == 2 && isLetters(word)) ||
         (word.size() == 3 && std::all_of(word.begin(), word.end(), isDigit));
}

std::string lowered(std::string_view word) {
  std::string result(word);
  std::transform(result.begin(), result.end(), result.begin(), asciiLower);
  return result;
}
std::string raised(std::string_view word) {
  std::string result(word);
  std::transform(result.begin(), result.end(), result.begin(), asciiUpper);
  return result;
}
std::string capitalized(std::string_view word) {
  std::string result = lowered(word);
  result.front() = asciiUpper(result.front());
  return result;
}

/// Takes the next word and its separator off the front of `rest`.
std::string_view takeWord(std::string_view& rest) noexcept {
  const std::size_t end = std::min(rest.find_first_of("_-"), rest.size());
  const std::string_view word = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return word;
}

std::string_view withoutSuffix(std::string_view locale) noexcept {
  return locale.substr(0, locale.find_first_of(".@"));
}

bool isNeutral(std::string_view locale) noexcept {
  const std::string_view name = withoutSuffix(locale);
  return name.empty() || name == "C" || name == "POSIX";
}

std::string identifierOf(std::string_view locale) {
  if (isNeutral(locale)) return std::string(kNeutralLocale);
  const LocaleParts parts = componentsOf(locale);
  if (parts.language.empty()) return std::string(kNeutralLocale);
  std::string identifier = parts.language;
  if (!parts.script.empty()) identifier += "_" + parts.script;
  if (!parts.country.empty()) identifier += "_" + parts.country;
  return identifier;
}

}  // namespace

std::string loginName() {
  // Asked for each request: reading the user database would cost more than making all the rest.
  thread_local std::optional<std::pair<uid_t, std::string>> known;
  if (const uid_t user = geteuid(); !known || known->first != user) {
    auto entry = currentUserEntry();
    known.emplace(user, entry && !entry->name.empty() ? entry->name : std::to_string(user));
  }
  return known->second;
}

std::string homeDirectory() {
  std::string home = textOrEmpty(secure_getenv("HOME"));
  if (home.starts_with('/')) return home;
  auto entry = currentUserEntry();
  if (entry && !entry->home.empty()) return std::move(entry->home);
  return "/";
}

std::string localeIdentifierFor(const LocaleSettings& settings) {
  if (!isNeutral(settings.program)) return identifierOf(settings.program);
  for (const std::string* choice : {&settings.lcAll, &settings.lcMessages, &settings.lang}) {
    if (!choice->empty()) return identifierOf(*choice);
  }
  return std::string(kNeutralLocale);
}

std::string currentLocaleIdentifier() {
  return localeIdentifierFor(
      {textOrEmpty(std::setlocale(LC_MESSAGES, nullptr)), textOrEmpty(std::getenv("LC_ALL")),
       textOrEmpty(std::getenv("LC_MESSAGES")), textOrEmpty(std::getenv("LANG"))});
}

LocaleParts componentsOf(std::string_view identifier) {
  std::string_view rest = withoutSuffix(identifier);
  LocaleParts parts;
  std::string_view word = takeWord(rest);
  if (isLanguage(word)) parts.language = lowered(word);
  word = takeWord(rest);
  if (isScript(word)) {
    parts.script = capitalized(word);
    word = takeWord(rest);
  }
  if (isCountry(word)) parts.country = raised(word);
  return parts;
}

}  // namespace platen::inline v0
