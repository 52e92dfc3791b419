// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string_view>

#include "Facts.h"
#include "Json.h"
#include "Server.h"
#include "Table.h"
#include "platen/IPPMessage.h"

namespace platen::tool {

/// How a list of the groups of an answer is shown.
struct ListForm {
  /// What they are, "jobs".
  std::string_view things;
  /// Of the table for people.
  Table::Row headings;
  Json (*json)(const Facts& thing);
  /// As many cells as there are headings.
  Table::Row (*row)(const Facts& thing);
};

/// Shows the groups in their order: for scripts as a JSON array, `[]` when there are none; for
/// people as a table, or as "no THINGS".
void showList(const IPPMessage::Groups& groups, const ListForm& form, const ServerOptions& options,
              std::ostream& out);

}  // namespace platen::tool
