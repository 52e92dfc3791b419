// SPDX-License-Identifier: Apache-2.0

// What docs/key-paths.md says of its example.

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>

#include "platen/Exception.h"
#include "tests/support/PrintersAnswer.h"

namespace platen {
namespace {

std::string document() {
  std::ifstream file(std::string(PLATEN_SOURCE_DIR) + "/docs/key-paths.md");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// As the table writes it.
std::string resultOf(const IPPMessage& message, const std::string& path) {
  try {
    return "`" + message.valueForKeyPath(path).description() + "`";
  } catch (const UndefinedKeyException& failure) {
    return "undefined in `" + std::string(failure.className()) + "`";
  }
}

TEST(KeyPathDocument, ShowsTheMessageThatItsPathsAreFor) {
  const std::string text = document();
  EXPECT_NE(text.find("```text\n" + test::printersAnswer()->description() + "\n```\n"),
            std::string::npos)
      << test::printersAnswer()->description();
}

TEST(KeyPathDocument, TellsTheResultOfEachPath) {
  const auto response = test::printersAnswer();
  const std::string text = document();
  const std::regex row("\\n\\| `([^`\\n]*)` \\| ([^|\\n]*) \\|");
  std::size_t rows = 0;
  for (std::sregex_iterator found(text.begin(), text.end(), row), end; found != end;
       ++found, ++rows) {
    EXPECT_EQ(resultOf(*response, (*found)[1]), (*found)[2]) << (*found)[1];
  }
  const std::regex anyRow("\\n\\| `");
  EXPECT_EQ(rows, static_cast<std::size_t>(
                      std::distance(std::sregex_iterator(text.begin(), text.end(), anyRow), {})));
  EXPECT_GE(rows, 25U);
}

}  // namespace
}  // namespace platen
