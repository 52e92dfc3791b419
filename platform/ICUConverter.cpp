// SPDX-License-Identifier: Apache-2.0

#include "platform/ICUConverter.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "platform/CaseFold.h"

// The C API only: it alone keeps its binary interface from one release to the next.
#define U_SHOW_CPLUSPLUS_API 0
#include <unicode/ucnv.h>
#include <unicode/ucnv_err.h>
#include <unicode/uenum.h>

namespace platen::inline v0 {
namespace {

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kPieceSize = std::size_t{1} << 16U;
constexpr std::size_t kAsciiOctets = 128;

struct Charset {
  std::string name;
  std::string converter;  ///< ICU's own name, which is never ambiguous.
  std::bitset<kAsciiOctets> asciiOctets;
};

struct CharsetList {
  std::vector<Charset> charsets;
  std::map<std::string, std::uint32_t, std::less<>> byName;  ///< Names in small letters.
};

struct RegisteredName {
  const char* name;
  const char* target;
};

/// Registered charsets that ICU converts but does not mark as registered.
constexpr RegisteredName kMoreCharsets[] = {{"windows-874", "windows-874-2000"}};

/// Registered aliases that ICU's list lacks, each with a name that the list has.
constexpr RegisteredName kMoreAliases[] = {
    {"csUTF8", "UTF-8"},
    {"csUTF16", "UTF-16"},
    {"csUTF16BE", "UTF-16BE"},
    {"csUTF16LE", "UTF-16LE"},
    {"csUTF32", "UTF-32"},
    {"csUTF32BE", "UTF-32BE"},
    {"csUTF32LE", "UTF-32LE"},
    {"csCESU-8", "CESU-8"},
    {"csISO885913", "ISO-8859-13"},
    {"csISO885914", "ISO-8859-14"},
    {"csISO885915", "ISO-8859-15"},
    {"ISO_8859-15", "ISO-8859-15"},
    {"csTIS620", "TIS-620"},
    {"ISO-8859-11", "TIS-620"},
    {"csGBK", "GBK"},
    {"csGB18030", "GB18030"},
    {"csBig5HKSCS", "Big5-HKSCS"},
    {"csKOI8U", "KOI8-U"},
    {"cswindows874", "windows-874"},
    {"cswindows1250", "windows-1250"},
    {"cswindows1251", "windows-1251"},
    {"cswindows1252", "windows-1252"},
    {"cswindows1253", "windows-1253"},
    {"cswindows1254", "windows-1254"},
    {"cswindows1255", "windows-1255"},
    {"cswindows1256", "windows-1256"},
    {"cswindows1257", "windows-1257"},
    {"cswindows1258", "windows-1258"},
};

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

// ICU's own stopping callbacks leave out what Unicode calls ignorable (joiners, soft hyphens,
// variation selectors) without a word. These leave the error standing for every character.
void stopEncoding(const void*, UConverterFromUnicodeArgs*, const UChar*, std::int32_t, UChar32,
                  UConverterCallbackReason, UErrorCode*) {}
void stopDecoding(const void*, UConverterToUnicodeArgs*, const char*, std::int32_t,
                  UConverterCallbackReason, UErrorCode*) {}

Converter openConverter(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &error), &ucnv_close);
  if (U_FAILURE(error) || !converter) return {nullptr, &ucnv_close};
  ucnv_setFromUCallBack(converter.get(), stopEncoding, nullptr, nullptr, nullptr, &error);
  ucnv_setToUCallBack(converter.get(), stopDecoding, nullptr, nullptr, nullptr, &error);
  if (U_FAILURE(error)) converter.reset();
  return converter;
}

/// Text on its way from one charset through UTF-16 into another, piece by piece, since ICU counts
/// octets in 32 bits.
class Conversion {
 public:
  Conversion(const char* from, const char* to)
      : from_(openConverter(from)), to_(openConverter(to)) {}

  std::optional<std::string> run(std::string_view input) {
    if (!from_ || !to_) return std::nullopt;
    std::string output;
    while (!input.empty()) {
      const std::string_view piece = input.substr(0, kPieceSize);
      input.remove_prefix(piece.size());
      if (!convert(piece, input.empty(), output)) return std::nullopt;
    }
    return output;
  }

 private:
  /// With `last` a character that is still incomplete becomes an error.
  bool convert(std::string_view piece, bool last, std::string& output) {
    const char* source = piece.data();
    std::array<char, 1024> buffer;
    UErrorCode error = U_ZERO_ERROR;
    do {
      char* target = buffer.data();
      error = U_ZERO_ERROR;
      ucnv_convertEx(to_.get(), from_.get(), &target, buffer.data() + buffer.size(), &source,
                     piece.data() + piece.size(), pivot_.data(), &pivotSource_, &pivotTarget_,
                     pivot_.data() + pivot_.size(), /*reset=*/0, static_cast<UBool>(last), &error);
      output.append(buffer.data(), target);
    } while (error == U_BUFFER_OVERFLOW_ERROR);
    return U_SUCCESS(error);
  }

  Converter from_;
  Converter to_;
  std::array<UChar, 512> pivot_{};
  UChar* pivotSource_ = pivot_.data();
  UChar* pivotTarget_ = pivot_.data();
};

/// A positive list: with any other type the meaning of an octet depends on shift sequences before
/// it, by which text can be made to read differently to a reader that does not follow them.
bool isStateless(UConverterType type) {
  switch (type) {
    case UCNV_SBCS:
    case UCNV_DBCS:
    case UCNV_MBCS:
    case UCNV_LATIN_1:
    case UCNV_US_ASCII:
    case UCNV_UTF8:
    case UCNV_CESU8:
    case UCNV_UTF16:
    case UCNV_UTF16_BigEndian:
    case UCNV_UTF16_LittleEndian:
    case UCNV_UTF32:
    case UCNV_UTF32_BigEndian:
    case UCNV_UTF32_LittleEndian:
      return true;
    default:
      return false;
  }
}

bool isAsciiOctet(UConverter* converter, char octet) {
  std::array<UChar, 4> units{};
  std::array<char, 8> octets{};
  UErrorCode error = U_ZERO_ERROR;
  const std::int32_t decoded = ucnv_toUChars(converter, units.data(), 4, &octet, 1, &error);
  if (U_FAILURE(error) || decoded != 1 || units[0] != static_cast<UChar>(octet)) return false;
  const std::int32_t encoded =
      ucnv_fromUChars(converter, octets.data(), 8, units.data(), 1, &error);
  return U_SUCCESS(error) && encoded == 1 && octets[0] == octet;
}

/// Asked octet by octet, since some charsets differ from ASCII in a few places only (three control
/// characters in the PC code pages).
std::bitset<kAsciiOctets> asciiOctetsOf(UConverter* converter) {
  std::bitset<kAsciiOctets> result;
  for (std::size_t octet = 0; octet < kAsciiOctets; ++octet) {
    result[octet] = isAsciiOctet(converter, static_cast<char>(octet));
  }
  return result;
}

std::string inSmallLetters(std::string_view name) {
  std::string result(name);
  std::transform(result.begin(), result.end(), result.begin(), asciiLower);
  return result;
}

std::vector<std::string> registeredNames(const char* converter) {
  std::vector<std::string> names;
  UErrorCode error = U_ZERO_ERROR;
  UEnumeration* list = ucnv_openStandardNames(converter, "IANA", &error);
  while (const char* name = uenum_next(list, nullptr, &error)) names.emplace_back(name);
  uenum_close(list);
  return names;
}

/// ICU's idea of the preferred MIME name, where the registry has that name too.
std::string preferredName(const char* converter, const std::vector<std::string>& names) {
  UErrorCode error = U_ZERO_ERROR;
  const char* mime = ucnv_getStandardName(converter, "MIME", &error);
  if (mime == nullptr) return names.front();
  const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
    return equalsIgnoringAsciiCase(name, mime);
  });
  return found == names.end() ? names.front() : std::string(mime);
}

void addCharset(CharsetList& list, const char* converterName,
                const std::vector<std::string>& names) {
  if (names.empty() || list.byName.contains(inSmallLetters(names.front()))) return;
  const Converter converter = openConverter(converterName);
  if (!converter || !isStateless(ucnv_getType(converter.get()))) return;
  const auto place = static_cast<std::uint32_t>(list.charsets.size());
  list.charsets.push_back(
      {preferredName(converterName, names), converterName, asciiOctetsOf(converter.get())});
  for (const std::string& name : names) list.byName.emplace(inSmallLetters(name), place);
}

CharsetList makeList() {
  CharsetList list;
  for (const char* name : {"UTF-8", "US-ASCII", "ISO-8859-1"}) {
    addCharset(list, name, registeredNames(name));
  }
  for (std::int32_t index = 0; index < ucnv_countAvailable(); ++index) {
    const char* converter = ucnv_getAvailableName(index);
    addCharset(list, converter, registeredNames(converter));
  }
  for (const auto& [name, converter] : kMoreCharsets) addCharset(list, converter, {name});
  for (const auto& [name, target] : kMoreAliases) {
    const auto found = list.byName.find(inSmallLetters(target));
    if (found != list.byName.end()) list.byName.emplace(inSmallLetters(name), found->second);
  }
  return list;
}

/// Never destroyed, so that encodings stay usable while static objects are being destroyed.
const CharsetList& charsetList() {
  static const CharsetList& list = *new CharsetList(makeList());
  return list;
}

}  // namespace

std::optional<std::uint32_t> charsetOfIANAName(std::string_view name) {
  if (name.size() > kLongestName) return std::nullopt;
  std::array<char, kLongestName> letters;
  std::transform(name.begin(), name.end(), letters.begin(), asciiLower);
  const auto& byName = charsetList().byName;
  const auto found = byName.find(std::string_view(letters.data(), name.size()));
  if (found == byName.end()) return std::nullopt;
  return found->second;
}

std::uint32_t charsetCount() { return static_cast<std::uint32_t>(charsetList().charsets.size()); }

const std::string& nameOfCharset(std::uint32_t charset) {
  return charsetList().charsets.at(charset).name;
}

bool isSameInUtf8(std::uint32_t charset, std::string_view octets) {
  const auto& same = charsetList().charsets.at(charset).asciiOctets;
  return std::all_of(octets.begin(), octets.end(), [&](char octet) {
    const std::size_t value = static_cast<unsigned char>(octet);
    return value < kAsciiOctets && same[value];
  });
}

std::optional<std::string> convertedFromUtf8(std::uint32_t charset, std::string_view utf8) {
  return Conversion("UTF-8", charsetList().charsets.at(charset).converter.c_str()).run(utf8);
}

std::optional<std::string> convertedToUtf8(std::uint32_t charset, std::string_view octets) {
  return Conversion(charsetList().charsets.at(charset).converter.c_str(), "UTF-8").run(octets);
}

}  // namespace platen::inline v0
