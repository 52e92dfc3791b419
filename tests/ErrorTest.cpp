// SPDX-License-Identifier: Apache-2.0

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "platen/Error.h"
#include "platen/Exception.h"

namespace platen {
namespace {

using Names = std::vector<std::string>;

std::shared_ptr<const Error> shared(std::string domain, std::int64_t code,
                                    Error::UserInfo userInfo = {}) {
  return std::make_shared<const Error>(std::move(domain), code, std::move(userInfo));
}

Error::UserInfo withText(std::string text) {
  return {{std::string(kLocalizedDescriptionKey), std::move(text)}};
}

Error::UserInfo withCause(std::shared_ptr<const Error> cause) {
  return {{std::string(kUnderlyingErrorKey), std::move(cause)}};
}

std::shared_ptr<const Error> chain(int length, std::int64_t innermostCode) {
  auto error = shared("D", innermostCode);
  for (int link = 1; link < length; ++link) {
    error = shared("D", link, withCause(error));
  }
  return error;
}

TEST(Error, KnowsDomainCodeAndUserInformation) {
  const auto cause = shared("Cause", -7);
  Error::UserInfo userInfo = withText("Not found");
  userInfo.emplace(kUnderlyingErrorKey, cause);
  userInfo.emplace("Names", Names{"a", "b"});
  const Error error("Domain", 1030, userInfo);
  EXPECT_EQ(error.domain(), "Domain");
  EXPECT_EQ(error.code(), 1030);
  EXPECT_EQ(error.userInfo(), userInfo);
  EXPECT_EQ(error.localizedDescription(), "Not found");
  EXPECT_EQ(error.underlyingError(), cause);
  EXPECT_EQ(error.names("Names"), (Names{"a", "b"}));
}

TEST(Error, HasNothingUnderAbsentKeys) {
  const Error error("Domain", 0);
  EXPECT_EQ(error.localizedDescription(), std::nullopt);
  EXPECT_EQ(error.underlyingError(), nullptr);
  EXPECT_EQ(error.names("Names"), Names());
}

TEST(Error, HasNothingUnderKeysOfAnotherKind) {
  const Error error("Domain", 0,
                    {{std::string(kLocalizedDescriptionKey), Names{"a"}},
                     {std::string(kUnderlyingErrorKey), std::string("text")},
                     {"Names", std::string("a")}});
  EXPECT_EQ(error.localizedDescription(), std::nullopt);
  EXPECT_EQ(error.underlyingError(), nullptr);
  EXPECT_EQ(error.names("Names"), Names());
}

TEST(Error, IsDescribedInOneLine) {
  EXPECT_EQ(Error("D", -3).description(), "D -3");
  EXPECT_EQ(Error("D", 4, withText("No\nsuch\tjob\x7f")).description(), "D 4: No such job ");
  EXPECT_EQ(Error("D", 4, withText("Caf\xC3\xA9")).description(), "D 4: Caf\xC3\xA9");
  EXPECT_EQ(Error("D", 5, withCause(shared("C", 404, withText("Gone")))).description(),
            "D 5; caused by C 404: Gone");
  EXPECT_EQ(Error("D", 5, withCause(nullptr)).description(), "D 5");
}

TEST(Error, DescribesSixteenErrorsOfAChain) {
  const std::string sixteen = chain(16, 0)->description();
  EXPECT_NE(sixteen.find("D 0"), std::string::npos);
  const std::string twenty = chain(20, 0)->description();
  EXPECT_NE(twenty.find("D 4"), std::string::npos);
  EXPECT_EQ(twenty.find("D 3"), std::string::npos);
}

TEST(Error, IsEqualWhenAllOfItIs) {
  EXPECT_EQ(Error("D", 1), Error("D", 1));
  EXPECT_EQ(Error("D", 1, withText("x")), Error("D", 1, withText("x")));
  EXPECT_NE(Error("D", 1), Error("E", 1));
  EXPECT_NE(Error("D", 1), Error("D", 2));
  EXPECT_NE(Error("D", 1), Error("D", 1, withText("x")));
  EXPECT_NE(Error("D", 1, withText("x")), Error("D", 1, withText("y")));
  EXPECT_NE(Error("D", 1, {{"a", Names{"x"}}}), Error("D", 1, {{"b", Names{"x"}}}));
  EXPECT_NE(Error("D", 1, {{"a", Names{"x"}}}), Error("D", 1, {{"a", std::string("x")}}));
}

TEST(Error, ComparesUnderlyingErrorsByValue) {
  EXPECT_EQ(Error("D", 1, withCause(shared("C", 2))), Error("D", 1, withCause(shared("C", 2))));
  EXPECT_NE(Error("D", 1, withCause(shared("C", 2))), Error("D", 1, withCause(shared("C", 3))));
  EXPECT_NE(Error("D", 1, withCause(shared("C", 2))), Error("D", 1, withCause(nullptr)));
  EXPECT_EQ(Error("D", 1, withCause(nullptr)), Error("D", 1, withCause(nullptr)));
}

TEST(Error, ComparesLongChainsByIdentityAtLast) {
  EXPECT_EQ(*chain(65, 0), *chain(65, 0));
  EXPECT_NE(*chain(65, 0), *chain(65, -1));
  EXPECT_NE(*chain(66, 0), *chain(66, 0));
  const auto deep = chain(1000, 0);
  EXPECT_EQ(Error("D", 1, withCause(deep)), Error("D", 1, withCause(deep)));
}

template <typename T>
class ExceptionOfKind : public testing::Test {};

using ExceptionKinds =
    testing::Types<RangeException, InvalidArgumentException, InconsistentArchiveException>;
TYPED_TEST_SUITE(ExceptionOfKind, ExceptionKinds);

TYPED_TEST(ExceptionOfKind, IsCaughtAsItselfAndAsTheRoot) {
  static_assert(std::is_base_of_v<Exception, TypeParam>);
  const auto raise = [] { throw TypeParam("the reason"); };
  EXPECT_THROW(raise(), TypeParam);
  try {
    raise();
    FAIL();
  } catch (const Exception& exception) {
    EXPECT_STREQ(exception.what(), "the reason");
  }
}

}  // namespace
}  // namespace platen
