// SPDX-License-Identifier: Apache-2.0

// What becomes of faults that the classes of an application meet, make or hide.

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "platen/Error.h"
#include "platen/Exception.h"
#include "platen/IPPCodableClass.h"
#include "platen/IPPValue.h"
#include "tests/support/Archives.h"

namespace platen::test {
namespace {

using ::testing::ThrowsMessage;

std::string code(IPPArchiveError error) {
  return std::to_string(static_cast<std::int64_t>(error)) + " ";
}

/// Writes and is read as the test wants.
class Wilful : public IPPCodable {
 public:
  using Write = std::function<void(IPPCoder&)>;

  explicit Wilful(Write write) : write_(std::move(write)) {}
  [[nodiscard]] std::string_view className() const noexcept override { return "TestWilful"; }
  void encodeWithCoder(IPPCoder& coder) const override { write_(coder); }
  static IPPCoder::Object initWithCoder(IPPCoder& coder) { return read(coder); }

  static inline std::function<IPPCoder::Object(IPPCoder&)> read;

 private:
  Write write_;
};

constinit const IPPCodableClass wilfulClass("TestWilful", Wilful::initWithCoder);
const IPPCodableRegistration registration(wilfulClass);

/// Of a class that is not registered.
class Unknown : public IPPCodable {
 public:
  [[nodiscard]] std::string_view className() const noexcept override { return "TestUnheardOf"; }
  void encodeWithCoder(IPPCoder& /*coder*/) const override {}
};

std::shared_ptr<Wilful> wilful(Wilful::Write write) {
  return std::make_shared<Wilful>(std::move(write));
}

void writeUnknown(IPPCoder& coder) {
  coder.encodeIntForKey(1, "before");
  coder.encodeObjectForKey(std::make_shared<Unknown>(), "content");
}

void swallow(IPPCoder& coder) {
  try {
    writeUnknown(coder);
  } catch (const Exception&) {  // NOLINT(bugprone-empty-catch)
  }
}

void expectOfNoMoreUse(IPPKeyedArchiver& archiver, const std::string& text) {
  const auto raises = ThrowsMessage<InvalidArgumentException>(text);
  const auto value = IPPValue::keyword("a");
  EXPECT_THAT([&] { archiver.encodeIntForKey(1, "more"); }, raises);
  EXPECT_THAT([&] { archiver.encodeRawValueForKey(1, "more"); }, raises);
  EXPECT_THAT([&] { archiver.encodeObjectForKey(value, "more"); }, raises);
  EXPECT_THAT([&] { archiver.encodeObjectsForKey({value}, "more"); }, raises);
  EXPECT_THAT([&] { archiver.encodeNamedObjectsForKey({{"a", value}}, "more"); }, raises);
  EXPECT_THAT([&] { archiver.encodeRootObject(*value); }, raises);
  EXPECT_THAT([&] { (void)archiver.archivedData(); }, raises);
  EXPECT_EQ(archiver.error()->localizedDescription(), text);
}

// The fields of an object that was refused half-way are gone.
TEST(KeyedArchiveFaults, LeaveTheArchiverOfNoMoreUse) {
  const std::string text = "a.content: unknown class \"TestUnheardOf\"";
  IPPKeyedArchiver archiver;
  EXPECT_THAT([&] { archiver.encodeObjectForKey(wilful(writeUnknown), "a"); },
              ThrowsMessage<InvalidArgumentException>(text));
  expectOfNoMoreUse(archiver, text);
}

TEST(KeyedArchiveFaults, LeaveTheArchiverOfNoMoreUseAfterTheRootObject) {
  const std::string text = "content: unknown class \"TestUnheardOf\"";
  IPPKeyedArchiver archiver;
  EXPECT_THAT([&] { archiver.encodeRootObject(*wilful(writeUnknown)); },
              ThrowsMessage<InvalidArgumentException>(text));
  expectOfNoMoreUse(archiver, text);
}

TEST(KeyedArchiveFaults, PassOnWhatAClassRaisesAndRememberIt) {
  const auto object = wilful([](IPPCoder& coder) {
    coder.encodeIntForKey(1, "before");
    throw std::runtime_error("of its own");
  });
  IPPKeyedArchiver archiver;
  EXPECT_THAT(
      [&] {
        archiver.encodeObjectsForKey({IPPValue::keyword("a"), object}, "a");
      },
      ThrowsMessage<std::runtime_error>("of its own"));
  EXPECT_EQ(archiver.error()->code(), static_cast<int>(IPPArchiveError::inconsistent));
  expectOfNoMoreUse(archiver, "a[1]: TestWilful could not be written");
}

TEST(KeyedArchiveFaults, AreToldWhenAClassSwallowsThem) {
  const std::string text = "content: unknown class \"TestUnheardOf\"";
  const auto carryOn = [](IPPCoder& coder) {
    swallow(coder);
    coder.encodeIntForKey(1, "after");
  };
  for (const auto& object : {wilful(swallow), wilful(carryOn)}) {
    std::shared_ptr<const Error> error;
    EXPECT_EQ(IPPKeyedArchiver::archivedDataWithRootObject(*object, {}, &error), std::nullopt);
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->code(), static_cast<int>(IPPArchiveError::unknownClass));
    EXPECT_EQ(error->localizedDescription(), text);
  }
}

std::string writingRefusal(const IPPCodable& object) {
  std::shared_ptr<const Error> error;
  EXPECT_EQ(IPPKeyedArchiver::archivedDataWithRootObject(object, {}, &error), std::nullopt);
  return std::to_string(error->code()) + " " + std::string(error->localizedDescription().value());
}

TEST(KeyedArchiveFaults, AreErrorRecordsWhateverAClassThrowsInWriting) {
  const std::string text =
      code(IPPArchiveError::inconsistent) + "content: TestWilful could not be written";
  for (const Wilful::Write& write :
       {Wilful::Write([](IPPCoder&) { throw std::runtime_error("of its own"); }),
        Wilful::Write([](IPPCoder&) { throw 7; })}) {
    const auto inner = wilful(write);
    const auto outer = wilful([&](IPPCoder& coder) { coder.encodeObjectForKey(inner, "content"); });
    EXPECT_EQ(writingRefusal(*outer), text);
  }
}

TEST(KeyedArchiveFaults, AreNotALackOfMemoryInWriting) {
  std::shared_ptr<const Error> error;
  const auto object = wilful([](IPPCoder&) { throw std::bad_alloc(); });
  EXPECT_THROW(IPPKeyedArchiver::archivedDataWithRootObject(*object, {}, &error), std::bad_alloc);
}

// --- Reading -------------------------------------------------------------------------------------

/// The refusal of an object that is read by reading nothing, and written as `write` wants.
std::string refusalOfUnread(const std::string& content, Wilful::Write write) {
  Wilful::read = [&](IPPCoder&) { return wilful(write); };
  return refusal(archiveOf(R"("$class":"TestWilful","content":)" + content));
}

void writeNull(IPPCoder& coder) { coder.encodeObjectForKey(nullptr, "content"); }

TEST(KeyedArchiveFaults, AreToldOfAnObjectThatIsNeverRead) {
  EXPECT_EQ(refusalOfUnread("null", writeNull), "");
  EXPECT_EQ(refusalOfUnread(R"({"$class":"IPPKeyword","value":"a"})", writeNull),
            code(IPPArchiveError::wrongType) +
                "content: TestWilful does not read the object that is here");
  EXPECT_EQ(
      refusalOfUnread(R"([{"$class":"IPPKeyword","value":"a"}])",
                      [](IPPCoder& coder) { coder.encodeObjectsForKey({nullptr}, "content"); }),
      code(IPPArchiveError::wrongType) +
          "content[0]: TestWilful does not read the object that is here");
}

TEST(KeyedArchiveFaults, KeepTheirPlaceAndCodeWhileAnObjectIsCompared) {
  const std::string text =
      code(IPPArchiveError::unknownReference) + "content.$ref: no object has the id 99";
  EXPECT_EQ(refusalOfUnread(R"({"$ref":99})", writeNull), text);
  EXPECT_EQ(refusalOfUnread(R"({"$ref":99})",
                            [](IPPCoder& coder) {
                              try {
                                writeNull(coder);
                              } catch (const Exception&) {  // NOLINT(bugprone-empty-catch)
                              }
                            }),
            text);
}

TEST(KeyedArchiveFaults, AreErrorRecordsWhateverAClassThrowsInReading) {
  const std::string inconsistent = code(IPPArchiveError::inconsistent);
  Wilful::read = [](IPPCoder&) -> IPPCoder::Object { throw 7; };
  EXPECT_EQ(refusal(archiveOf(R"("$class":"TestWilful")")),
            inconsistent + "TestWilful cannot be made of this");
  EXPECT_EQ(refusalOfUnread("null", [](IPPCoder&) { throw 7; }),
            inconsistent + "TestWilful could not be written");
  Wilful::read = [](IPPCoder& coder) -> IPPCoder::Object {
    try {
      return coder.decodeObjectForKey("missing");
    } catch (const Exception&) {
      throw 7;
    }
  };
  EXPECT_EQ(refusal(archiveOf(R"("$class":"TestWilful")")),
            code(IPPArchiveError::missingKey) + "the key \"missing\" is missing");
}

// A message tells nothing but that it cannot be made, and of a lack of memory not even that.
TEST(KeyedArchiveFaults, AreNotALackOfMemoryInsideOfAMessage) {
  Wilful::read = [](IPPCoder&) -> IPPCoder::Object { throw std::bad_alloc(); };
  for (const char* name : {"IPPMessage", "IPPRequest", "IPPResponse"}) {
    EXPECT_THROW(
        refusal(archiveOf("\"$class\":\"" + std::string(name) +
                          R"(","tag":1,"request-id":1,"groups":[{"$class":"TestWilful"}])")),
        std::bad_alloc);
  }
}

TEST(KeyedArchiveFaults, AreNotWhatALackOfMemoryIs) {
  EXPECT_THROW(refusalOfUnread("null", [](IPPCoder&) { throw std::bad_alloc(); }), std::bad_alloc);
  Wilful::read = [](IPPCoder&) -> IPPCoder::Object { throw std::bad_alloc(); };
  EXPECT_THROW(refusal(archiveOf(R"("$class":"TestWilful")")), std::bad_alloc);
}

}  // namespace
}  // namespace platen::test
