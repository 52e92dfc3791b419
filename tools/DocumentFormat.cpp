// SPDX-License-Identifier: Apache-2.0
#include "DocumentFormat.h"

#include <algorithm>

namespace platen::tool {

namespace {

using namespace std::string_view_literals;

struct Signature {
  std::string_view octets;
  std::string_view format;
};

constexpr Signature kSignatures[] = {
    {"%PDF-"sv, "application/pdf"},   {"%!PS"sv, "application/postscript"},
    {"\xFF\xD8\xFF"sv, "image/jpeg"}, {"\x89PNG\r\n\x1A\n"sv, "image/png"},
    {"RaS2"sv, "image/pwg-raster"},   {"UNIRAST\0"sv, "image/urf"}};

bool beginsWith(Bytes head, std::string_view octets) noexcept {
  return head.size() >= octets.size() &&
         std::equal(octets.begin(), octets.end(), head.begin(), [](char expected, auto octet) {
           return static_cast<unsigned char>(expected) == octet;
         });
}

}  // namespace

std::string_view guessedFormat(Bytes head) noexcept {
  for (const auto& [octets, format] : kSignatures) {
    if (beginsWith(head, octets)) {
      return format;
    }
  }
  return "application/octet-stream";
}

}  // namespace platen::tool
