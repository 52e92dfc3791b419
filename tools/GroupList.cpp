// SPDX-License-Identifier: Apache-2.0
#include "GroupList.h"

#include <ostream>
#include <vector>

#include "Report.h"

namespace platen::tool {

namespace {

Json arrayOf(const IPPMessage::Groups& groups, const ListForm& form) {
  std::vector<Json> values;
  values.reserve(groups.size());
  for (const auto& group : groups) {
    values.push_back(form.json(Facts(*group)));
  }
  return Json::array(values);
}

Table tableOf(const IPPMessage::Groups& groups, const ListForm& form) {
  Table table(form.headings);
  for (const auto& group : groups) {
    table.add(form.row(Facts(*group)));
  }
  return table;
}

}  // namespace

void showList(const IPPMessage::Groups& groups, const ListForm& form, const ServerOptions& options,
              std::ostream& out) {
  if (options.json) {
    return writeJson(out, arrayOf(groups, form));
  }
  if (groups.empty()) {
    out << "no " << form.things << '\n';
    return;
  }
  tableOf(groups, form).show(out, Display::ofStandardOutput({}));
}

}  // namespace platen::tool
