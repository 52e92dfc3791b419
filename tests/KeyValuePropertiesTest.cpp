// SPDX-License-Identifier: Apache-2.0

// Every getter in the public headers is a property. A getter that is added and not declared as one
// fails here, with its name.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "platen/platen.h"
#include "tests/support/HeaderGetters.h"
#include "tests/support/KeyValuePrinting.h"

namespace platen {
namespace {

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Names = std::set<std::string>;
using Classes = std::map<std::string, test::DeclaredClass>;

const fs::path kSource = PLATEN_SOURCE_DIR;

// No kind of result holds what these give: a class as an object, an object of the application.
const Names kNoProperties = {"ippClass", "delegate"};

std::string readFile(const fs::path& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

const Classes& classes() {
  static const Classes all = [] {
    Classes found;
    for (const auto& entry : fs::directory_iterator(kSource / "include/platen")) {
      if (!entry.is_regular_file()) continue;
      for (auto& declared : test::declaredClasses(readFile(entry.path()))) {
        found.emplace(declared.name, declared);
      }
    }
    return found;
  }();
  return all;
}

// The class and those that it is derived from, as far as they can be asked by keys.
Names ancestry(const std::string& name) {
  Names names;
  const auto found = classes().find(name);
  if (found == classes().end() || name == "IPPConnectionDelegate") return names;
  names.insert(name);
  for (const std::string& base : found->second.bases) {
    names.merge(ancestry(base));
  }
  return names;
}

// Of `KeyValueAccess` itself only the name of the class is a property.
Names gettersOf(const std::string& name) {
  Names getters;
  for (const std::string& ancestor : ancestry(name)) {
    if (ancestor != "KeyValueAccess") {
      getters.insert(classes().at(ancestor).getters.begin(), classes().at(ancestor).getters.end());
    }
  }
  for (const std::string& none : kNoProperties) {
    getters.erase(none);
  }
  getters.insert("className");
  return getters;
}

Names without(Names names, const Names& others) {
  std::erase_if(names, [&](const std::string& name) { return others.contains(name); });
  return names;
}

using Object = std::shared_ptr<const KeyValueAccess>;

// One object of each class that has any.
std::vector<Object> objects() {
  std::vector<Object> all = {
      std::make_shared<IPPMessage>(1, 1),
      IPPRequest::requestWithId(2),
      IPPResponse::initWithStatusCode(0),
      IPPAttribute::attributeWithValue(nullptr, "name"),
      IPPValue::octetString("a"),
      IPPValue::textWithoutLanguage("a"),
      IPPValue::nameWithoutLanguage("a"),
      IPPValue::text("a", "de"),
      IPPValue::name("a", "de"),
      IPPValue::keyword("a"),
      IPPValue::uri(URL::parse("ipp://host/").value()),
      IPPValue::uriScheme("a"),
      IPPValue::mimeMediaType("a"),
      IPPValue::charset("a"),
      IPPValue::naturalLanguage("a"),
      IPPValue::integerWithInt(1),
      IPPValue::enumerationWithInt(1),
      IPPValue::booleanWithBool(true),
      IPPValue::rangeOfInteger({1, 2}),
      IPPValue::resolution({1, 2}, true),
      IPPValue::dateTime(Date()),
      IPPValue::array({IPPValue::keyword("a")}),
      IPPValue::dictionaryWithDictionary({}),
      std::make_shared<const IPPUnsupported>(),
      std::make_shared<const IPPNoValue>(),
      std::make_shared<const IPPNotSettable>(),
      std::make_shared<const IPPAdminDefine>(),
  };
  for (const auto& [name, groupClass] : IPPAttributeGroup::ippGroupsCatalog()) {
    all.push_back(groupClass->make());
  }
  return all;
}

TEST(Properties, AreAllGettersOfThePublicHeaders) {
  for (const Object& object : objects()) {
    const std::string name(object->className());
    ASSERT_TRUE(classes().contains(name)) << name;
    const auto listed = object->propertyNames();
    const Names declared(listed.begin(), listed.end());
    EXPECT_THAT(without(gettersOf(name), declared), IsEmpty()) << "not declared for " << name;
    EXPECT_THAT(without(declared, gettersOf(name)), IsEmpty()) << "no getters of " << name;
    EXPECT_EQ(declared.size(), listed.size()) << "declared twice for " << name;
  }
}

TEST(Properties, AreThoseOfEveryClassThatIsAskedByKeys) {
  Names asked;
  for (const Object& object : objects()) {
    asked.merge(ancestry(std::string(object->className())));
  }
  for (const auto& [name, declared] : classes()) {
    if (ancestry(name).contains("IPPCodable")) {
      EXPECT_TRUE(asked.contains(name)) << "no object of " << name << " is looked at here";
    }
  }
  EXPECT_GE(asked.size(), 40U);
}

TEST(Properties, AnswerEveryOneOfTheirNames) {
  for (const Object& object : objects()) {
    for (const std::string_view name : object->propertyNames()) {
      EXPECT_NO_THROW(object->valueForKey(name)) << object->className() << " " << name;
    }
  }
}

TEST(Properties, OfAnErrorRecordAreItsGettersToo) {
  const KeyValue error(std::make_shared<const Error>("Domain", 1));
  const Names getters = classes().at("Error").getters;
  EXPECT_GE(getters.size(), 6U);
  for (const std::string& getter : getters) {
    EXPECT_NO_THROW(error.valueForKey(getter)) << getter;
  }
}

TEST(Properties, OfAForwarderAreTwoByDesign) {
  EXPECT_THAT(classes().at("IPPMessageKVCForwarder").getters,
              UnorderedElementsAre("object", "description", "className"));
}

// Each declaration gives the operation whose name it has.
TEST(Properties, StandUnderTheNameOfTheirGetter) {
  const std::regex declaration("property<&\\w+::(\\w+)>\\(\\s*\"(\\w+)\"\\)");
  std::size_t count = 0;
  for (const char* room : {"platform", "coding", "values", "model", "requests", "responses"}) {
    for (const auto& entry : fs::directory_iterator(kSource / room)) {
      if (entry.path().extension() != ".cpp") continue;
      const std::string text = readFile(entry.path());
      for (std::sregex_iterator found(text.begin(), text.end(), declaration), end; found != end;
           ++found, ++count) {
        EXPECT_EQ((*found)[1], (*found)[2]) << entry.path();
      }
    }
  }
  EXPECT_GE(count, 140U);
}

TEST(Properties, AreMissingByDesignOnlyWhereThereIsSuchAGetter) {
  EXPECT_TRUE(classes().at("IPPValue").getters.contains("ippClass"));
  EXPECT_TRUE(classes().at("IPPAttributeGroup").getters.contains("ippClass"));
  EXPECT_TRUE(classes().at("IPPRequest").getters.contains("delegate"));
}

// What the reading of the headers itself rests on.
TEST(HeaderGetters, AreFoundHoweverTheyAreWritten) {
  const auto found = test::declaredClasses(R"(
class PLATEN_EXPORT Forward;
/// A comment with int comment() const; in it.
class PLATEN_EXPORT Sample final : public Base,
                                   public std::enable_shared_from_this<Sample> {
  int hiddenAtFirst() const;
 public:
  Sample(int a = {}) : a_(a) { run(); }
  [[nodiscard]] std::int32_t inBody() const noexcept { return a_; }
  [[nodiscard]] virtual const std::map<int, std::string>& pure() const = 0;
  [[nodiscard]] std::optional<std::vector<std::string>>
  onTwoLines() const override;
  const Text&reference() const noexcept override { if (a_) { return b_; } return c_; }
  std::shared_ptr<Pointed>*pointer() const;
  struct Inner { int inner() const; };
  [[nodiscard]] int taking(int argument) const;
  [[nodiscard]] int changing();
  [[nodiscard]] static int ofTheClass();
  void acting() const;
  [[nodiscard]] int _internal() const;
 protected:
  [[nodiscard]] int protectedOne() const;
 private:
  int privateOne() const;
 public:
  int publicAgain() const;
 private:
  int a_ = 0;
};
)");
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].name, "Sample");
  EXPECT_EQ(found[0].bases, (std::vector<std::string>{"Base", "enable_shared_from_this"}));
  EXPECT_THAT(found[0].getters, UnorderedElementsAre("inBody", "pure", "onTwoLines", "reference",
                                                     "pointer", "publicAgain"));
}

}  // namespace
}  // namespace platen
