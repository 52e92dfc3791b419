// SPDX-License-Identifier: Apache-2.0
#include "Report.h"

#include <ostream>

#include "DisplayText.h"
#include "MessageView.h"

namespace platen::tool {

void carryOut(const IPPRequest::Pointer& request, const URL& target, const std::string& done,
              Session& session, const ServerOptions& options, std::ostream& out) {
  const auto answer = session.ask(request, target);
  const std::string status = statusText(answer->statusCode());
  if (options.json) {
    return writeJson(out, Json::object({{"operation", request->ippOperationCodename()},
                                        {"target", target.absoluteString()},
                                        {"status", status}}));
  }
  // A success may have been one with reservations.
  out << harmless(done) << (answer->statusCode() == 0 ? "" : " (" + status + ")") << '\n';
}

void writeJson(std::ostream& out, const Json& value) { out << value.text() << std::endl; }

}  // namespace platen::tool
