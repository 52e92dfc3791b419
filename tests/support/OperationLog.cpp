// SPDX-License-Identifier: Apache-2.0
#include "tests/support/OperationLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <vector>

#include "platen/IPPConstants.h"
#include "platen/IPPMessage.h"

namespace platen::test {
namespace {

constexpr const char* kServers[] = {"cupsd", "ippeveprinter"};

constexpr std::string_view kHead = R"(# Operations against real print servers

<!-- Made by scripts/operations-table, which runs the integration tests. Do not edit. -->

What each operation of the library's table looks like on the wire, and what two real print servers
answer to it. Every request begins with `attributes-charset` and `attributes-natural-language`,
which are left out here; the attributes that follow stand in their order, those of another group
than the operation group behind its name, and `document` where octets follow the request. Of a target
the form of its path is shown: NAME is a queue or a class, N a number.

The row of an operation that a server refuses says why; for most operations of ippeveprinter, which
is one printer and no print server, that is that it does not offer them.

| id | operation | server | request | status | why |
|---|---|---|---|---|---|
)";

/// The path with the numbers and the names that a test chose taken out.
std::string formOf(const URL& url) {
  std::string form;
  std::string previous;
  const std::string path = url.path().empty() ? "/" : url.path();
  for (std::size_t from = 1; from <= path.size();) {
    const std::size_t to = std::min(path.find('/', from), path.size());
    const std::string segment = path.substr(from, to - from);
    const bool isNumber =
        !segment.empty() && segment.find_first_not_of("0123456789") == segment.npos;
    const bool isName = previous == "printers" || previous == "classes";
    form += "/" + std::string(isNumber ? "N" : isName ? "NAME" : segment);
    previous = segment;
    from = to + 1;
  }
  return form;
}

bool isTarget(std::string_view name) {
  return name == kIPPPrinterUriAttributeName || name == kIPPJobUriAttributeName ||
         name == kIPPJobPrinterUriAttributeName;
}

std::string shapeOf(const IPPAttribute& attribute) {
  const std::string name(attribute.name().value_or("?"));
  return isTarget(name) ? name + "=" + formOf(attribute.ippValue()->value().asURL()) : name;
}

bool isDefault(const IPPAttribute& attribute) {
  return attribute.name() == kIPPAttributesCharsetAttributeName ||
         attribute.name() == kIPPAttributesNaturalLanguageAttributeName;
}

/// "job" of "job-attributes-tag".
std::string kindOf(const IPPAttributeGroup& group) {
  const std::string_view name = group.name();
  return std::string(name.substr(0, name.find("-attributes-tag")));
}

std::string line(const OperationLog::Row& row) {
  char id[16];
  std::snprintf(id, sizeof id, "0x%04X", static_cast<unsigned>(row.operation));
  const auto name = std::string(IPPRequest::operationName(row.operation));
  const auto shape = row.shape.empty() ? std::string() : "`" + row.shape + "`";
  std::string text = "|";
  for (const auto& cell : {std::string(id), name, row.server, shape, row.status, row.why}) {
    text += cell.empty() ? " |" : " " + cell + " |";
  }
  return text + "\n";
}

/// Writes the table when everything has run.
class Writer : public testing::Environment {
 public:
  void TearDown() override {
    const char* path = std::getenv("PLATEN_WRITE_OPERATIONS");
    const OperationLog& log = OperationLog::shared();
    if (path == nullptr || log.isEmpty()) return;
    for (const auto& [operation, name] : IPPRequest::operationIdToNameSpec()) {
      for (const char* server : kServers) {
        EXPECT_TRUE(log.hasRow(operation, server)) << name << " was not driven against " << server;
      }
    }
    if (testing::UnitTest::GetInstance()->Passed()) std::ofstream(path) << log.table();
  }
};

[[maybe_unused]] const testing::Environment* const kWriter =
    testing::AddGlobalTestEnvironment(new Writer);

}  // namespace

OperationLog& OperationLog::shared() {
  static OperationLog log;
  return log;
}

bool OperationLog::hasRow(std::int32_t operation, const std::string& server) const {
  return std::any_of(rows_.begin(), rows_.end(), [&](const Row& row) {
    return row.operation == operation && row.server == server;
  });
}

std::string OperationLog::table() const {
  std::string text(kHead);
  for (const Row& row : rows_) text += line(row);
  return text;
}

std::string shapeOf(const IPPRequest& request) {
  std::string shape;
  const auto sent = IPPMessage::initWithDataRepresentation(request.dataRepresentation());
  for (const auto& group : sent->ippGroups()) {
    if (kindOf(*group) != "operation") shape += (shape.empty() ? "" : "; ") + kindOf(*group) + ":";
    for (const auto& attribute : group->attributes()) {
      if (!isDefault(*attribute)) shape += (shape.empty() ? "" : " ") + shapeOf(*attribute);
    }
  }
  return shape;
}

}  // namespace platen::test
