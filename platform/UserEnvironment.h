// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Who the user is, where home is, and which language is spoken there. These functions only look:
/// they change neither the locale nor the environment.
///
/// Threads: any thread, as long as no other changes the environment or the locale meanwhile (the C
/// library's own rule for reading them).

#include <string>
#include <string_view>

namespace platen::inline v0 {

/// The login name of the effective user, as the user database has it; without an entry there, the
/// user's number in decimal. Never empty. Looked up once for each user that a thread has been.
std::string loginName();

/// The user's home directory: HOME where it is an absolute path, else what the user database says,
/// else "/". A set-user-ID program does not listen to HOME.
std::string homeDirectory();

/// Where a locale is looked for, in POSIX form ("pt_BR.UTF-8"); what is not set is empty.
struct LocaleSettings {
  std::string program;     ///< What the program itself chose with `setlocale`.
  std::string lcAll;       ///< The environment's LC_ALL.
  std::string lcMessages;  ///< The environment's LC_MESSAGES.
  std::string lang;        ///< The environment's LANG.
};

/// The parts of a locale identifier; a part that it lacks is empty.
struct LocaleParts {
  std::string language;  ///< In small letters: "zh".
  std::string script;    ///< With a capital: "Hans".
  std::string country;   ///< In capitals, or three digits: "CN", "419".

  friend bool operator==(const LocaleParts&, const LocaleParts&) = default;
};

/// The locale that `settings` name: the program's own choice unless that is "C" (which it is too in
/// a program that never chose), else the first of LC_ALL, LC_MESSAGES and LANG that is set. The
/// identifier is given without charset and modifier ("pt_BR"); for "C", "POSIX", and whatever does
/// not read as a locale it is "en".
std::string localeIdentifierFor(const LocaleSettings& settings);

/// The identifier of the user's locale at this moment, for example "en_US".
std::string currentLocaleIdentifier();

/// The parts of an identifier whose words are joined by "_" or "-". A charset (".UTF-8"), a
/// modifier
/// ("@euro") and variants are dropped.
LocaleParts componentsOf(std::string_view identifier);

}  // namespace platen::inline v0
