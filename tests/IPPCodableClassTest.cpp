// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>

#include <memory>
#include <string_view>
#include <vector>

#include "coding/CodableClasses.h"
#include "platen/IPPAttributeGroup.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPValue.h"
#include "tests/support/Archives.h"

namespace platen::test {
namespace {

/// Remembers which class it was read as.
class Marked : public IPPCodable {
 public:
  explicit Marked(int number) : mark(number) {}
  [[nodiscard]] std::string_view className() const noexcept override { return "TestMarked"; }
  void encodeWithCoder(IPPCoder& /*coder*/) const override {}

  const int mark;
};

constinit const IPPCodableClass firstClass("TestMarked", [](IPPCoder&) -> IPPCoder::Object {
  return std::make_shared<Marked>(1);
});
constinit const IPPCodableClass secondClass("TestMarked", [](IPPCoder&) -> IPPCoder::Object {
  return std::make_shared<Marked>(2);
});
const IPPCodableRegistration firstRegistration(firstClass);
const IPPCodableRegistration secondRegistration(secondClass);

std::vector<std::string_view> registeredNames() {
  std::vector<std::string_view> names;
  for (const auto* entry = IPPCodableRegistration::first(); entry != nullptr;
       entry = entry->next()) {
    const std::string_view name = entry->codableClass().className();
    if (!name.starts_with("Test")) {
      names.push_back(name);
    }
  }
  return names;
}

TEST(IPPCodableClass, IsThereOnceForEveryClassThatHasNoOtherCatalog) {
  EXPECT_THAT(registeredNames(),
              ::testing::UnorderedElementsAre("IPPArray", "IPPAttribute", "IPPMessage",
                                              "IPPRequest", "IPPResponse"));
}

TEST(IPPCodableClass, IsFoundByArchivesAsThoseOfTheCatalogsAre) {
  for (const std::string_view name : registeredNames()) {
    EXPECT_TRUE(isCodableClass(name)) << name;
  }
  for (const auto& [name, valueClass] : IPPValue::ippValuesCatalog()) {
    EXPECT_TRUE(isCodableClass(valueClass->className())) << name;
  }
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    EXPECT_TRUE(isCodableClass(groupClass->className())) << name;
  }
  EXPECT_FALSE(isCodableClass("IPPStringValue"));
  EXPECT_FALSE(isCodableClass("ippmessage"));
  EXPECT_FALSE(isCodableClass(""));
}

TEST(IPPCodableClass, IsTheFirstOneOfTwoWithTheSameName) {
  const auto back = unarchived<const Marked>(archived(Marked(7)));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->mark, 1);
}

}  // namespace
}  // namespace platen::test
