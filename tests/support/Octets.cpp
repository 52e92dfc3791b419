// SPDX-License-Identifier: Apache-2.0

#include "tests/support/Octets.h"

#include <cctype>
#include <stdexcept>

namespace platen::test {
namespace {

class OctetReader {
 public:
  explicit OctetReader(std::string_view text) : text_(text) {}

  Data readAll() {
    Data data = read();
    if (!text_.empty()) {
      fail("a '>' without its '<'");
    }
    return data;
  }

 private:
  [[noreturn]] void fail(const std::string& reason) const {
    throw std::invalid_argument(reason + " before: " + std::string(text_));
  }

  // Up to the end, or up to a ">" that is left there.
  Data read() {
    Data data;
    while (!text_.empty() && text_.front() != '>') {
      readOne(data);
    }
    return data;
  }

  void readOne(Data& data) {
    if (std::isspace(static_cast<unsigned char>(text_.front())) != 0) {
      text_.remove_prefix(1);
    } else if (text_.front() == '\'') {
      readQuoted(data);
    } else if (text_.front() == '<') {
      readRun(data);
    } else {
      readOctet(data);
    }
  }

  void readQuoted(Data& data) {
    text_.remove_prefix(1);
    const std::size_t end = text_.find('\'');
    if (end == std::string_view::npos) {
      fail("an unfinished quotation");
    }
    data.insert(data.end(), text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(end));
    text_.remove_prefix(end + 1);
  }

  void readRun(Data& data) {
    text_.remove_prefix(1);
    const Data run = read();
    if (text_.empty()) {
      fail("a '<' without its '>'");
    }
    text_.remove_prefix(1);
    data.push_back(static_cast<std::uint8_t>(run.size() >> 8U));
    data.push_back(static_cast<std::uint8_t>(run.size()));
    data.insert(data.end(), run.begin(), run.end());
  }

  void readOctet(Data& data) {
    const std::string digits(text_.substr(0, 2));
    std::size_t read = 0;
    const bool isHex = digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
    const unsigned long octet = isHex ? std::stoul(digits, &read, 16) : 0;
    if (read != 2) {
      fail("no octet");
    }
    data.push_back(static_cast<std::uint8_t>(octet));
    text_.remove_prefix(2);
  }

  std::string_view text_;
};

}  // namespace

Data octets(std::string_view text) { return OctetReader(text).readAll(); }

std::string hex(Bytes bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t octet : bytes) {
    text += text.empty() ? "" : " ";
    text += kDigits[octet >> 4U];
    text += kDigits[octet & 0x0fU];
  }
  return text;
}

}  // namespace platen::test
