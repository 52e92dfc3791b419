// SPDX-License-Identifier: Apache-2.0

/// The shape of CBOR, RFC 8949 §3, as far as an archive needs it:
///
///     item     = head [ content ]
///     head     = major-type-3-BITS info-5-BITS argument
///     argument = 0OCTET / 1OCTET / 2OCTET / 4OCTET / 8OCTET         ; info 0-23, 24, 25, 26, 27
///
/// The parser behind this one calls itself for every piece of a string of indefinite length, and
/// such pieces nest; it also wraps negative numbers around. Neither ever gets that far.
///
/// The walk ends early where the items are nested deeper than they may be: the parser gets as far
/// and no farther, and says where that is.

#include <limits>

#include "coding/ArchiveFault.h"
#include "coding/ArchiveForm.h"

namespace platen::inline v0 {

namespace {

constexpr auto kLargestInt = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());

class CBORWalk {
 public:
  explicit CBORWalk(Bytes data) : data_(data) {}

  void walk() {
    for (walkItem(); !open_.empty();) {
      if (open_.size() > kIPPArchiveDeepestNesting) {
        return;
      }
      if (open_.back()-- == 0) {
        open_.pop_back();
      } else {
        walkItem();
      }
    }
    item_ = at_;
    require(at_ == data_.size(), "something follows the archive");
  }

 private:
  void require(bool isTrue, const char* what,
               IPPArchiveError code = IPPArchiveError::malformed) const {
    if (!isTrue) {
      throw CBORFault{{code, "", std::string(what) + " at octet " + std::to_string(at_)}, item_};
    }
  }

  [[nodiscard]] std::size_t left() const { return data_.size() - at_; }

  std::uint64_t take(std::size_t octets) {
    require(octets <= left(), "cut short");
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < octets; ++i) {
      value = value << 8U | data_[at_++];
    }
    return value;
  }

  std::uint64_t takeArgument(unsigned info) {
    require(info < 28, "an indefinite length, or no CBOR");
    return info < 24 ? info : take(std::size_t{1} << (info - 24));
  }

  void walkItem() {
    item_ = at_;
    const auto head = static_cast<unsigned>(take(1));
    const std::uint64_t argument = takeArgument(head & 31U);
    switch (head >> 5U) {
      case 0:
      case 1:
        return require(argument <= kLargestInt, "a number beyond 64 bits",
                       IPPArchiveError::outOfRange);
      case 2:
      case 3:
        require(argument <= left(), "cut short");
        at_ += argument;
        return;
      case 4:
        return openContainer(argument, 1);
      case 5:
        return openContainer(argument, 2);
      case 6:
        return require(false, "a tag");
      default:
        return;  // the simple ones; the parser knows which of them there are
    }
  }

  // Every item has an octet at least, so that no count can make the product below overflow.
  void openContainer(std::uint64_t count, std::uint64_t itemsEach) {
    require(count <= left() / itemsEach, "cut short");
    open_.push_back(count * itemsEach);
  }

  Bytes data_;
  std::size_t at_ = 0;
  std::size_t item_ = 0;             // Where the item at hand begins.
  std::vector<std::uint64_t> open_;  // How many items are still to come, in each open container.
};

}  // namespace

void requireCBORShape(Bytes data) { CBORWalk(data).walk(); }

}  // namespace platen::inline v0
