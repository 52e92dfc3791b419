// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "platen/IPPRequest.h"

namespace platen::test {

/// Which operations the tests of this process have driven, against which server, in which shape and
/// with which outcome. Where the environment variable PLATEN_WRITE_OPERATIONS names a file, that is
/// written as a table when all tests have run and passed; it is a failure when an operation of the
/// library's table was not driven against each server. Nothing in the table depends on the run: no
/// ports, numbers, names of users or queues.
///
/// Threads: one thread at a time.
class OperationLog {
 public:
  struct Row {
    std::int32_t operation = 0;
    std::string server;
    bool isRefusal = false;
    std::string shape;
    std::string status;
    std::string why;
    auto operator<=>(const Row&) const = default;
  };

  static OperationLog& shared();

  /// Adds a row unless it is there. `why` explains a status other than successful-ok.
  void add(Row row) { rows_.insert(std::move(row)); }
  [[nodiscard]] bool isEmpty() const { return rows_.empty(); }
  [[nodiscard]] bool hasRow(std::int32_t operation, const std::string& server) const;
  /// As a file in Markdown.
  [[nodiscard]] std::string table() const;

 private:
  std::set<Row> rows_;
};

/// The attributes of a request as they stand on the wire, in order, without the charset and the
/// language that lead in all requests. A target shows by the form of its path:
///
///     printer-uri=/printers/NAME requesting-user-name; job: job-printer-uri=/printers/NAME
///
std::string shapeOf(const IPPRequest& request);

}  // namespace platen::test
