// SPDX-License-Identifier: Apache-2.0
#include <ostream>

#include "Facts.h"
#include "Queues.h"
#include "Report.h"
#include "Session.h"
#include "Table.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

Json deviceJson(const Facts& device) {
  return Json::object({{"uri", device.text("device-uri")},
                       {"class", device.text("device-class")},
                       {"info", device.text("device-info")},
                       {"make_and_model", device.text("device-make-and-model")},
                       {"id", device.text("device-id")},
                       {"location", device.text("device-location")}});
}

}  // namespace

void listDevices(const ServerOptions& options, std::ostream& out) {
  Session session(options);
  const auto answer =
      session.askForAny(IPPRequest::serverAvailableDevicesRequest(), serverURI(options));
  std::vector<Json> values;
  Table table({"Class", "Device", "Info", "Model"});
  for (const auto& group : answer == nullptr ? IPPMessage::Groups() : answer->printerGroups()) {
    const Facts device(*group);
    values.push_back(deviceJson(device));
    table.add({device.text("device-class").value_or(""), device.text("device-uri").value_or(""),
               device.text("device-info").value_or(""),
               device.text("device-make-and-model").value_or("")});
  }
  if (options.json) {
    return writeJson(out, Json::array(values));
  }
  if (table.empty()) {
    out << "no devices\n";
    return;
  }
  table.show(out, Display::ofStandardOutput({}));
}

}  // namespace platen::tool
