// SPDX-License-Identifier: Apache-2.0

// How deep objects and raw objects may be inside of each other in an archive, however they got
// there.

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "platen/Error.h"
#include "platen/Exception.h"
#include "platen/IPPArray.h"
#include "platen/IPPValue.h"
#include "tests/support/Archives.h"

namespace platen::test {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::StartsWith;

std::string code(IPPArchiveError error) {
  return std::to_string(static_cast<std::int64_t>(error)) + " ";
}

// Beside each other in the archive, and yet each inside of the one before it.
TEST(KeyedArchiveDepth, BoundsChainsOfReferencesToWhatComesLater) {
  const auto chain = [](int length) {
    std::string text = R"("$class":"IPPArray","value":[)";
    for (int i = 0; i < length - 2; ++i) {
      const std::string next = std::to_string(i + 1);
      text += R"({"$class":"IPPArray","$id":)" + std::to_string(i) + R"(,"value":[{"$ref":)" +
              next + "}]},";
    }
    return archiveOf(text + R"({"$class":"IPPKeyword","$id":)" + std::to_string(length - 2) +
                     R"(,"value":"a"}])");
  };
  EXPECT_EQ(refusal(chain(kIPPArchiveDeepestObject)), "");
  EXPECT_THAT(refusal(chain(kIPPArchiveDeepestObject + 1)),
              ::testing::AllOf(StartsWith(code(IPPArchiveError::tooDeep) + "value["),
                               EndsWith("]: objects nested too deep")));
  EXPECT_THAT(refusal(chain(10000)), EndsWith("]: objects nested too deep"));
}

/// A set of `levels` - 1 values beside each other, each of which holds the one before it.
std::string backwardChain(int levels) {
  std::string text = R"("$class":"IPPArray","value":[{"$class":"IPPKeyword","$id":0,"value":"a"})";
  for (int i = 1; i < levels - 1; ++i) {
    text += R"(,{"$class":"IPPArray","$id":)" + std::to_string(i) + R"(,"value":[{"$ref":)" +
            std::to_string(i - 1) + "}]}";
  }
  return archiveOf(text + "]");
}

// What a reference leads back to is made already, and can be as high as the archive is long.
TEST(KeyedArchiveDepth, BoundsChainsOfReferencesToWhatCameBefore) {
  const std::string tooDeep =
      code(IPPArchiveError::tooDeep) + "value[255].value[0]: objects nested too deep";
  EXPECT_EQ(refusal(backwardChain(kIPPArchiveDeepestObject)), "");
  EXPECT_EQ(refusal(backwardChain(kIPPArchiveDeepestObject + 1)), tooDeep);
  EXPECT_EQ(refusal(backwardChain(100'000)), tooDeep);
}

/// Reads the objects under the keys "0", "1", ..., each of which holds the one before it, and gives
/// how many there are of them.
int objectsReadOneByOne(int count) {
  std::string text = R"("0":{"$class":"IPPKeyword","$id":0,"value":"a"})";
  for (int i = 1; i < count; ++i) {
    text += ",\"" + std::to_string(i) + R"(":{"$class":"IPPArray","$id":)" + std::to_string(i) +
            R"(,"value":[{"$ref":)" + std::to_string(i - 1) + "}]}";
  }
  const std::string whole = archiveOf(text);
  const auto archive = IPPKeyedUnarchiver::initForReadingWithData(Data(whole.begin(), whole.end()));
  int read = 0;
  try {
    for (; read < count; ++read) {
      archive->decodeObjectForKey(std::to_string(read));
    }
  } catch (const InconsistentArchiveException&) {
    EXPECT_EQ(archive->error()->code(), static_cast<int>(IPPArchiveError::tooDeep));
  }
  return read;
}

TEST(KeyedArchiveDepth, BoundsWhatIsReadOneByOne) {
  EXPECT_EQ(objectsReadOneByOne(kIPPArchiveDeepestObject), kIPPArchiveDeepestObject);
  EXPECT_EQ(objectsReadOneByOne(kIPPArchiveDeepestObject + 1), kIPPArchiveDeepestObject);
}

/// The same as `backwardChain`.
IPPValue::Pointer backwardTower(int levels) {
  IPPValueList values = {IPPValue::keyword("a")};
  while (static_cast<int>(values.size()) < levels - 1) {
    values.push_back(IPPValue::array({values.back()}));
  }
  return IPPValue::array(values);
}

std::string writingRefusal(const IPPCodable& object) {
  std::shared_ptr<const Error> error;
  IPPKeyedArchiver::archivedDataWithRootObject(object, {}, &error);
  return error == nullptr ? "" : std::string(error->localizedDescription().value_or("?"));
}

TEST(KeyedArchiveDepth, BoundsWhatIsWrittenOfSharedObjects) {
  const auto most = backwardTower(kIPPArchiveDeepestObject);
  const auto back = unarchived<const IPPValue>(archived(*most));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(archivedText(*back), archivedText(*most));
  const std::string tooDeep = "value[255].value[0]: nested too deep";
  EXPECT_EQ(writingRefusal(*backwardTower(kIPPArchiveDeepestObject + 1)), tooDeep);
  EXPECT_EQ(writingRefusal(*backwardTower(1000)), tooDeep);
}

// --- Raw objects ---------------------------------------------------------------------------------

TEST(KeyedArchiveDepth, BoundsRawObjectsThatAreWritten) {
  RawValue raw = 1;
  for (int i = 0; i < 64; ++i) {
    raw = RawValue::Dictionary{{"a", raw}};
  }
  IPPKeyedArchiver archiver;
  archiver.encodeRawValueForKey(raw, "raw");
  const auto archive = IPPKeyedUnarchiver::initForReadingWithData(archiver.archivedData());
  EXPECT_EQ(archive->decodeRawValueForKey("raw"), raw);
  EXPECT_THAT([&] { archiver.encodeRawValueForKey(RawValue::Array{raw}, "more"); },
              ::testing::ThrowsMessage<InvalidArgumentException>("more: nested too deep"));
}

std::string refusalOfRaw(const std::string& raw) {
  const std::string text = archiveOf("\"raw\":" + raw);
  const auto archive = IPPKeyedUnarchiver::initForReadingWithData(Data(text.begin(), text.end()));
  try {
    archive->decodeRawValueForKey("raw");
    return "";
  } catch (const InconsistentArchiveException& failure) {
    return std::to_string(archive->error()->code()) + " " + failure.what();
  }
}

TEST(KeyedArchiveDepth, BoundsRawObjectsThatAreRead) {
  const auto nested = [](int levels) {
    std::string raw = "1";
    for (int i = 0; i < levels; ++i) {
      raw = i % 2 == 0 ? "[" + raw + "]" : R"({"$dictionary":[{"name":"a","value":)" + raw + "}]}";
    }
    return raw;
  };
  EXPECT_EQ(refusalOfRaw(nested(64)), "");
  for (const int levels : {65, 200}) {
    EXPECT_THAT(
        refusalOfRaw(nested(levels)),
        AllOf(StartsWith(code(IPPArchiveError::tooDeep) + "raw"), EndsWith(": nested too deep")));
  }
}

}  // namespace
}  // namespace platen::test
