// SPDX-License-Identifier: Apache-2.0
//
//   URI-reference = URI / relative-ref                                   RFC 3986 §4.1
//   URI           = scheme ":" hier-part [ "?" query ] [ "#" fragment ]  RFC 3986 §3
//   authority     = [ userinfo "@" ] host [ ":" port ]                   RFC 3986 §3.2
//   IPv6addrz     = IPv6address "%25" ZoneID                             RFC 6874 §2

#include "platen/URL.h"

#include <uriparser/Uri.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <limits>
#include <new>
#include <utility>

namespace platen::inline v0 {

namespace {

/// A part of the text, by offsets, so that it holds for every copy of the text.
struct Range {
  static constexpr std::uint32_t kAbsent = std::numeric_limits<std::uint32_t>::max();

  std::uint32_t begin = kAbsent;
  std::uint32_t length = 0;

  [[nodiscard]] bool isAbsent() const { return begin == kAbsent; }
};

/// Where the parts of a valid text are.
struct Split {
  Range scheme;
  Range user;
  Range host;
  Range path;
  Range query;
  Range fragment;
  std::uint32_t length = 0;
  std::uint16_t port = 0;
  bool hasPort = false;
  bool hostIsBracketed = false;
};

/// Memory for the nodes that the parser makes for each path segment: with it, parsing an ordinary
/// URL touches no heap. A path of very many segments goes on there.
class SegmentMemory {
 public:
  SegmentMemory() {
    backend_.malloc = [](UriMemoryManager* self, std::size_t size) {
      return static_cast<SegmentMemory*>(self->userData)->allocate(size);
    };
    backend_.free = [](UriMemoryManager* self, void* memory) {
      static_cast<SegmentMemory*>(self->userData)->release(memory);
    };
    backend_.userData = this;
    uriCompleteMemoryManager(&manager_, &backend_);
  }
  SegmentMemory(const SegmentMemory&) = delete;
  SegmentMemory& operator=(const SegmentMemory&) = delete;

  UriMemoryManager* manager() { return &manager_; }

 private:
  static constexpr std::size_t kAlignment = alignof(std::max_align_t);
  static constexpr std::size_t kSize = 2048;

  void* allocate(std::size_t size) {
    const std::size_t rounded = (size + kAlignment - 1) / kAlignment * kAlignment;
    if (rounded < size || rounded > kSize - used_) {
      return std::malloc(size);
    }
    void* const memory = buffer_.data() + used_;
    used_ += rounded;
    return memory;
  }

  void release(void* memory) {
    const std::less<const void*> before;
    if (before(memory, buffer_.data()) || !before(memory, buffer_.data() + kSize)) {
      std::free(memory);
    }
  }

  UriMemoryManager backend_{};
  UriMemoryManager manager_{};
  std::size_t used_ = 0;
  alignas(std::max_align_t) std::array<std::byte, kSize> buffer_;
};

/// The parser's answer about a text, which must outlive it.
class ParsedURI {
 public:
  explicit ParsedURI(std::string_view text)
      : text_(text),
        isValid_(uriParseSingleUriExMmA(&uri_, text.data(), text.data() + text.size(), nullptr,
                                        memory_.manager()) == URI_SUCCESS) {}
  ParsedURI(const ParsedURI&) = delete;
  ParsedURI& operator=(const ParsedURI&) = delete;
  ~ParsedURI() {
    if (isValid_) {
      uriFreeUriMembersMmA(&uri_, memory_.manager());
    }
  }

  [[nodiscard]] bool isValid() const { return isValid_; }
  [[nodiscard]] const UriUriA& uri() const { return uri_; }
  [[nodiscard]] bool hostIsIPv6() const { return isValid_ && uri_.hostData.ip6 != nullptr; }
  [[nodiscard]] bool hostIsBracketed() const {
    return uri_.hostData.ip6 != nullptr || uri_.hostData.ipFuture.first != nullptr;
  }

  [[nodiscard]] Range range(const UriTextRangeA& part) const {
    if (part.first == nullptr) {
      return {};
    }
    // An empty part may point at a constant of the parser's in place of the text.
    if (part.first == part.afterLast) {
      return {0, 0};
    }
    return {static_cast<std::uint32_t>(part.first - text_.data()),
            static_cast<std::uint32_t>(part.afterLast - part.first)};
  }

 private:
  SegmentMemory memory_;
  std::string_view text_;
  UriUriA uri_{};
  bool isValid_;
};

bool isUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_' || c == '~';
}

/// The digit's value, or -1.
int hexValue(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool isEscapeAt(std::string_view text, std::size_t index) {
  return text[index] == '%' && text.size() - index > 2 && hexValue(text[index + 1]) >= 0 &&
         hexValue(text[index + 2]) >= 0;
}

/// ZoneID = 1*( unreserved / pct-encoded )
bool isZoneIdentifier(std::string_view text) {
  std::size_t index = 0;
  while (index < text.size()) {
    if (isEscapeAt(text, index)) {
      index += 3;
    } else if (isUnreserved(text[index])) {
      ++index;
    } else {
      return false;
    }
  }
  return !text.empty();
}

/// The parser knows no zone identifiers. A text with a valid one is given to it with an address of
/// the same length in the place of address and zone, so that all offsets stay; a bracket stands
/// nowhere but around the host, which the parser sees to. Nothing when there is no zone.
std::optional<std::string> withoutZone(std::string_view text) {
  constexpr std::string_view kStandIn = "v1.";
  const std::size_t begin = text.find('[') + 1;
  const std::size_t percent = begin == 0 ? std::string_view::npos : text.find("%25", begin);
  const std::size_t end = percent == std::string_view::npos ? percent : text.find(']', percent);
  if (end == std::string_view::npos ||
      !isZoneIdentifier(text.substr(percent + 3, end - percent - 3))) {
    return std::nullopt;
  }
  const std::string address = "//[" + std::string(text.substr(begin, percent - begin)) + "]";
  if (!ParsedURI(address).hostIsIPv6()) {
    return std::nullopt;
  }
  std::string masked(text);
  std::fill(masked.begin() + static_cast<std::ptrdiff_t>(begin),
            masked.begin() + static_cast<std::ptrdiff_t>(end), 'a');
  masked.replace(begin, kStandIn.size(), kStandIn);
  return masked;
}

bool endsPath(char c) { return c == '?' || c == '#'; }
bool endsAuthority(char c) { return c == '/' || endsPath(c); }

/// The path of a valid text: behind scheme and authority, before query and fragment.
Range pathRange(std::string_view text, const Range& scheme) {
  const auto* begin = text.begin() + (scheme.isAbsent() ? 0 : scheme.length + 1);
  if (std::string_view(begin, text.end()).starts_with("//")) {
    begin = std::find_if(begin + 2, text.end(), endsAuthority);
  }
  const auto* const end = std::find_if(begin, text.end(), endsPath);
  return {static_cast<std::uint32_t>(begin - text.begin()),
          static_cast<std::uint32_t>(end - begin)};
}

/// Takes over the port; false when it is out of range.
bool splitPort(const UriTextRangeA& digits, Split& split) {
  if (digits.first == digits.afterLast) {
    return true;
  }
  split.hasPort = true;
  return std::from_chars(digits.first, digits.afterLast, split.port).ec == std::errc();
}

std::optional<Split> splitParsed(std::string_view text) {
  const ParsedURI parsed(text);
  Split split;
  if (!parsed.isValid() || !splitPort(parsed.uri().portText, split)) {
    return std::nullopt;
  }
  split.scheme = parsed.range(parsed.uri().scheme);
  split.user = parsed.range(parsed.uri().userInfo);
  split.host = parsed.range(parsed.uri().hostText);
  split.query = parsed.range(parsed.uri().query);
  split.fragment = parsed.range(parsed.uri().fragment);
  split.path = pathRange(text, split.scheme);
  split.hostIsBracketed = parsed.hostIsBracketed();
  split.length = static_cast<std::uint32_t>(text.size());
  return split;
}

/// Nothing when `text` is no URL of ours.
std::optional<Split> splitText(std::string_view text) {
  if (text.empty() || text.size() >= Range::kAbsent) {
    return std::nullopt;
  }
  const std::optional<std::string> masked = withoutZone(text);
  return splitParsed(masked ? *masked : text);
}

std::string decodeEscapes(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (isEscapeAt(text, index)) {
      decoded += static_cast<char>(hexValue(text[index + 1]) * 16 + hexValue(text[index + 2]));
      index += 2;
    } else {
      decoded += text[index];
    }
  }
  return decoded;
}

}  // namespace

/// Parts and text are one block of memory: the text follows the parts.
struct URL::Parts : Split {
  explicit Parts(const Split& split) : Split(split) {}

  static std::shared_ptr<const Parts> make(const Split& split, std::string_view text) {
    using Word = std::uint32_t;
    static_assert(alignof(Parts) <= alignof(Word) && sizeof(Parts) % sizeof(Word) == 0);
    const std::size_t words = (sizeof(Parts) + text.size() + sizeof(Word) - 1) / sizeof(Word);
    const std::shared_ptr<Word[]> block = std::make_shared_for_overwrite<Word[]>(words);
    const Parts* const parts = new (block.get()) Parts(split);
    std::copy(text.begin(), text.end(), reinterpret_cast<char*>(block.get()) + sizeof(Parts));
    return {block, parts};
  }

  [[nodiscard]] std::string_view text() const {
    return {reinterpret_cast<const char*>(this) + sizeof(Parts), length};
  }

  [[nodiscard]] std::optional<std::string_view> part(const Range& range) const {
    if (range.isAbsent()) {
      return std::nullopt;
    }
    return text().substr(range.begin, range.length);
  }
};

URL::URL(std::shared_ptr<const Parts> parts) noexcept : parts_(std::move(parts)) {}

std::optional<URL> URL::parse(std::string_view text) {
  const std::optional<Split> split = splitText(text);
  if (!split) {
    return std::nullopt;
  }
  return URL(Parts::make(*split, text));
}

bool URL::isValid(std::string_view text) { return splitText(text).has_value(); }

std::string_view URL::absoluteString() const noexcept { return parts_->text(); }

std::optional<std::string_view> URL::scheme() const noexcept {
  return parts_->part(parts_->scheme);
}

std::optional<std::string_view> URL::user() const noexcept {
  const std::optional<std::string_view> userInfo = parts_->part(parts_->user);
  return userInfo ? userInfo->substr(0, userInfo->find(':')) : userInfo;
}

std::optional<std::string_view> URL::host() const noexcept { return parts_->part(parts_->host); }

bool URL::hostIsBracketed() const noexcept { return parts_->hostIsBracketed; }

std::optional<std::uint16_t> URL::port() const noexcept {
  return parts_->hasPort ? std::optional(parts_->port) : std::nullopt;
}

std::string URL::path() const {
  std::string_view path = escapedPath();
  if (path.size() > 1 && path.back() == '/') {
    path.remove_suffix(1);
  }
  return decodeEscapes(path);
}

std::string_view URL::escapedPath() const noexcept {
  return parts_->text().substr(parts_->path.begin, parts_->path.length);
}

std::optional<std::string_view> URL::query() const noexcept { return parts_->part(parts_->query); }

std::optional<std::string_view> URL::fragment() const noexcept {
  return parts_->part(parts_->fragment);
}

std::string URL::lastPathComponent() const {
  const std::string path = this->path();
  const std::size_t last = path.find_last_not_of('/');
  if (last == std::string::npos) {
    return path.empty() ? "" : "/";
  }
  const std::size_t slash = path.find_last_of('/', last);
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(begin, last + 1 - begin);
}

std::string URL::escapePath(std::string_view text) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  constexpr std::string_view kOthersAllowed = "!$&'()*+,;=:@/";
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    if (isUnreserved(c) || kOthersAllowed.find(c) != std::string_view::npos) {
      escaped += c;
    } else {
      const auto octet = static_cast<unsigned char>(c);
      escaped += {'%', kHexDigits[octet / 16], kHexDigits[octet % 16]};
    }
  }
  return escaped;
}

bool operator==(const URL& left, const URL& right) noexcept {
  return left.parts_ == right.parts_ || left.parts_->text() == right.parts_->text();
}

}  // namespace platen::inline v0
