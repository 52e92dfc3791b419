// SPDX-License-Identifier: Apache-2.0
#include <ostream>
#include <string>

#include "Commands.h"
#include "EnumNames.h"
#include "KeptMessage.h"
#include "KeyPathText.h"
#include "LocalFile.h"
#include "MessageJson.h"
#include "MessageView.h"
#include "Report.h"

namespace platen::tool {

namespace {

std::string headerOf(const KeptMessage& kept) {
  const std::string version = kept.version.empty() ? "" : ", IPP " + kept.version;
  return codeText(*kept.message, kept.isRequest) + version + ", request-id " +
         std::to_string(kept.message->requestId());
}

Json jsonOf(const KeptMessage& kept) {
  const IPPMessage& message = *kept.message;
  return Json::object(
      {{"kind", kept.isRequest ? "request" : "response"},
       {"name", kept.isRequest ? operationText(message.ippTag()) : statusText(message.ippTag())},
       {"code", message.ippTag()},
       {"version", kept.version.empty() ? Json() : Json(kept.version)},
       {"request_id", message.requestId()},
       {"groups", groupsJson(message.ippGroups())},
       {"document_octets", kept.documentLength}});
}

std::string documentText(std::size_t length) {
  return length == 1 ? "1 octet of document data follows"
                     : std::to_string(length) + " octets of document data follow";
}

}  // namespace

void dumpMessage(const DumpOptions& options, std::ostream& out) {
  const LocalFile file(options.file);
  const KeptMessage kept = messageIn(file, options.kind, options.form);
  if (options.key) {
    return writeLines(linesAtKeyPath(*kept.message, *options.key, file.displayName()), out);
  }
  if (options.json) {
    return writeJson(out, jsonOf(kept));
  }
  const Display display = Display::ofStandardOutput(options.width);
  out << display.strong(headerOf(kept)) << "\n\n";
  showGroups(out, kept.message->ippGroups(), display);
  if (kept.documentLength > 0) {
    out << '\n' << documentText(kept.documentLength) << '\n';
  }
}

}  // namespace platen::tool
