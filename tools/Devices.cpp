// SPDX-License-Identifier: Apache-2.0
#include "GroupList.h"
#include "Queues.h"
#include "Session.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"

namespace platen::tool {

namespace {

Json jsonOf(const Facts& device) {
  return Json::object({{"uri", device.text("device-uri")},
                       {"class", device.text("device-class")},
                       {"info", device.text("device-info")},
                       {"make_and_model", device.text("device-make-and-model")},
                       {"id", device.text("device-id")},
                       {"location", device.text("device-location")}});
}

Table::Row rowOf(const Facts& device) {
  return {device.textOrEmpty("device-class"), device.textOrEmpty("device-uri"),
          device.textOrEmpty("device-info"), device.textOrEmpty("device-make-and-model")};
}

const ListForm kList{"devices", {"Class", "Device", "Info", "Model"}, &jsonOf, &rowOf};

}  // namespace

void listDevices(const ServerOptions& options, std::ostream& out) {
  Session session(options);
  const auto answer =
      session.askForAny(IPPRequest::serverAvailableDevicesRequest(), serverURI(options));
  showList(answer == nullptr ? IPPMessage::Groups() : answer->printerGroups(), kList, options, out);
}

}  // namespace platen::tool
