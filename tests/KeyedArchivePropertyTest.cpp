// SPDX-License-Identifier: Apache-2.0

// Messages made by chance, from seeds that are always the same: whatever they hold and share, what
// comes back from an archive of them is equal and shares as much.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "platen/IPPNullValue.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/IPPStringValue.h"
#include "platen/IPPStringValueWithLanguage.h"
#include "tests/support/Archives.h"

namespace platen::test {
namespace {

/// Makes objects by chance. Each may be one that it made before.
class Chance {
 public:
  explicit Chance(std::uint64_t seed) : engine_(seed) {}

  std::shared_ptr<IPPMessage> message() {
    const auto tag = static_cast<std::int32_t>(engine_());
    const auto requestId = static_cast<std::int32_t>(engine_());
    IPPMessage::Groups groups;
    for (std::uint64_t i = below(5); i > 0; --i) {
      groups.push_back(again(groups_, [&] { return group(); }));
    }
    switch (below(3)) {
      case 0:
        return std::make_shared<IPPMessage>(tag, requestId, groups);
      case 1:
        return std::make_shared<IPPResponse>(tag, requestId, groups);
      default:
        return requestOf(groups);
    }
  }

 private:
  std::uint64_t below(std::uint64_t limit) { return engine_() % limit; }

  // One in eight is an old one.
  template <class Pool, class Make>
  typename Pool::value_type again(Pool& pool, Make make) {
    if (!pool.empty() && below(8) == 0) {
      return pool[below(pool.size())];
    }
    pool.push_back(make());
    return pool.back();
  }

  std::shared_ptr<IPPMessage> requestOf(const IPPMessage::Groups& groups) {
    auto request = IPPRequest::requestWithId(static_cast<std::int32_t>(below(0x4100)));
    for (const auto& group : groups) {
      request->addGroup(group);
    }
    return request;
  }

  std::shared_ptr<IPPAttributeGroup> group() {
    const auto& catalog = IPPAttributeGroup::ippGroupsCatalog();
    auto group = std::next(catalog.begin(), static_cast<std::ptrdiff_t>(below(catalog.size())))
                     ->second->make();
    for (std::uint64_t i = below(6); i > 0; --i) {
      group->addAttribute(again(attributes_, [&] { return attribute(); }));
    }
    return group;
  }

  std::shared_ptr<IPPAttribute> attribute() {
    auto content = below(10) == 0 ? nullptr : value(4);
    return std::make_shared<IPPAttribute>(std::move(content), text());
  }

  Text text() { return below(10) == 0 ? Text() : Text(string()); }

  // Of a few letters, or of any octets; sometimes long.
  std::string string() {
    std::string string(below(200) == 0 ? below(70000) : below(12), 'x');
    const bool isWild = below(4) == 0;
    for (char& c : string) {
      c = isWild ? static_cast<char>(engine_()) : static_cast<char>('a' + below(26));
    }
    return string;
  }

  IPPValue::Pointer value(int depth) {
    return again(values_, [&] { return below(3) != 0 || depth == 0 ? leaf() : branch(depth - 1); });
  }

  IPPValue::Pointer branch(int depth) {
    if (below(2) == 0) {
      IPPValueList list;
      for (std::uint64_t i = below(4) + 1; i > 0; --i) {
        list.push_back(value(depth));
      }
      return IPPValue::array(list);
    }
    IPPValueDictionary members;
    for (std::uint64_t i = below(30); i > 0; i /= 2) {
      members.set(string(), value(depth));
    }
    return IPPValue::dictionaryWithDictionary(members);
  }

  IPPValue::Pointer leaf() {
    switch (below(5)) {
      case 0:
        return stringLeaf();
      case 1:
        return numberLeaf();
      case 2:
        return structuredLeaf();
      case 3:
        return nullLeaf();
      default:
        return IPPValue::uri(URL::parse("ipp://h" + std::to_string(below(9)) + "/%20").value());
    }
  }

  IPPValue::Pointer stringLeaf() {
    switch (below(8)) {
      case 0:
        return std::make_shared<const IPPKeyword>(text());
      case 1:
        return std::make_shared<const IPPText>(text());
      case 2:
        return std::make_shared<const IPPName>(text());
      case 3:
        return std::make_shared<const IPPOctetString>(text());
      case 4:
        return std::make_shared<const IPPCharset>(text());
      case 5:
        return std::make_shared<const IPPTextWithLanguage>(text(), text());
      case 6:
        return std::make_shared<const IPPNameWithLanguage>(text(), text());
      default:
        return std::make_shared<const IPPUri>(Text());
    }
  }

  Number number() {
    switch (below(4)) {
      case 0:
        return {static_cast<std::int64_t>(engine_())};
      case 1:
        return {below(2) == 0};
      case 2:
        return {static_cast<double>(engine_()) / static_cast<double>(engine_())};
      default:
        return {static_cast<std::int64_t>(below(100)) - 50};
    }
  }

  IPPValue::Pointer numberLeaf() {
    switch (below(3)) {
      case 0:
        return IPPValue::integer(number());
      case 1:
        return IPPValue::enumeration(number());
      default:
        return IPPValue::boolean(number());
    }
  }

  IPPValue::Pointer structuredLeaf() {
    switch (below(3)) {
      case 0:
        return IPPValue::rangeOfInteger({engine_(), engine_()});
      case 1:
        return IPPValue::resolution({static_cast<double>(static_cast<std::int32_t>(engine_())),
                                     static_cast<double>(below(2400))},
                                    below(2) == 0);
      default:
        return IPPValue::dateTime(
            Date(std::chrono::milliseconds(static_cast<std::int64_t>(engine_()))));
    }
  }

  IPPValue::Pointer nullLeaf() {
    switch (below(5)) {
      case 0:
        return std::make_shared<const IPPUnsupported>();
      case 1:
        return std::make_shared<const IPPNoValue>();
      case 2:
        return std::make_shared<const IPPNotSettable>();
      case 3:
        return std::make_shared<const IPPAdminDefine>();
      default:
        return std::make_shared<const IPPValue>();
    }
  }

  std::mt19937_64 engine_;
  std::vector<std::shared_ptr<IPPAttributeGroup>> groups_;
  std::vector<std::shared_ptr<IPPAttribute>> attributes_;
  std::vector<IPPValue::Pointer> values_;
};

class KeyedArchiveProperty : public testing::TestWithParam<std::uint64_t> {};

TEST_P(KeyedArchiveProperty, WhatComesBackIsEqualAndSharesAsMuch) {
  Chance chance(GetParam());
  for (int i = 0; i < 8; ++i) {
    const auto message = chance.message();
    const std::string text = archivedText(*message);
    for (const IPPArchiveFormat format : kArchiveFormats) {
      const auto back = unarchived<IPPMessage>(archived(*message, format));
      ASSERT_NE(back, nullptr) << refusal(archived(*message, format));
      EXPECT_TRUE(back->isEqual(*message));
      EXPECT_EQ(archivedText(*back), text);
    }
  }
}

// Cut, or with an octet changed: an object or an error, and never both or neither.
TEST_P(KeyedArchiveProperty, WhatIsDamagedIsReadOrRefused) {
  std::mt19937_64 engine(GetParam());
  const auto message = Chance(GetParam()).message();
  for (const IPPArchiveFormat format : kArchiveFormats) {
    const Data whole = archived(*message, format);
    for (int i = 0; i < 50; ++i) {
      Data data = whole;
      data[engine() % data.size()] = static_cast<std::uint8_t>(engine());
      data.resize(engine() % 2 == 0 ? data.size() : engine() % data.size());
      const std::string outcome = refusal(data);
      EXPECT_TRUE(outcome.empty() || (outcome.front() >= '1' && outcome.front() <= '9')) << outcome;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, KeyedArchiveProperty, testing::Range<std::uint64_t>(1, 9));

}  // namespace
}  // namespace platen::test
