// SPDX-License-Identifier: Apache-2.0

/// What no decoder can beat: reading the octets, and finding where the fields are (RFC 8010 §3.1):
///
///     message   = 8OCTET *( delimiter *record ) %x03
///     record    = value-tag LENGTH-16 name LENGTH-16 value
///
/// Members of collections are records like all others (RFC 8010 §3.1.6).

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>

#include "Bench.h"

namespace platen::bench {

namespace {

constexpr std::size_t kHeader = 8;
constexpr std::uint8_t kEndOfAttributes = 0x03;
constexpr std::uint8_t kLastDelimiter = 0x0F;

class Walk {
 public:
  explicit Walk(Bytes octets) : next_(octets.data()), left_(octets.size()) {}

  /// The number of records; nothing when the octets end before the message does.
  std::optional<std::size_t> countRecords() {
    std::size_t records = 0;
    for (bool isWhole = skip(kHeader); isWhole && left_ != 0;) {
      const std::uint8_t tag = *next_;
      skip(1);
      if (tag == kEndOfAttributes) {
        return records;
      }
      if (tag > kLastDelimiter) {
        isWhole = skipCounted() && skipCounted();
        ++records;
      }
    }
    return std::nullopt;
  }

 private:
  bool skip(std::size_t count) {
    if (count > left_) {
      return false;
    }
    next_ += count;
    left_ -= count;
    return true;
  }

  bool skipCounted() {
    return left_ >= 2 && skip(std::size_t{2} + (std::size_t{next_[0]} << 8U | next_[1]));
  }

  const std::uint8_t* next_;
  std::size_t left_;
};

// Read and written behind the compiler's back, so that it leaves out nothing of what is measured.
volatile std::size_t sink;
void* (*volatile copyOctets)(void*, const void*, std::size_t) = std::memcpy;

void printLine(const Capture& capture) {
  const Data& octets = capture.octets;
  Data copy(octets.size());
  const double copying =
      nanosecondsOf([&] { copyOctets(copy.data(), octets.data(), octets.size()); });
  const double walking = nanosecondsOf([&] { sink = Walk(octets).countRecords().value(); });
  std::printf("%s\t%zu\t%.0f\t%.0f\n", capture.name.c_str(), octets.size(), copying, walking);
}

}  // namespace

void benchLimits(const std::vector<Capture>& captures) {
  std::printf("name\toctets\tmemcpy ns\twalk ns\n");
  for (const Capture& capture : captures) {
    if (Walk(capture.octets).countRecords()) {
      printLine(capture);
    } else {
      std::printf("%s\t%zu\tundecodable\n", capture.name.c_str(), capture.octets.size());
    }
  }
}

}  // namespace platen::bench
