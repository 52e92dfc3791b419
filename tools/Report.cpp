// SPDX-License-Identifier: Apache-2.0
#include "Report.h"

#include <ostream>

#include "AnswerStatus.h"
#include "DisplayText.h"
#include "MessageView.h"

namespace platen::tool {

void carryOut(const IPPRequest::Pointer& request, const URL& target, const std::string& done,
              Session& session, const ServerOptions& options, std::ostream& out) {
  const auto answer = session.ask(request, target);
  if (options.json) {
    return writeJson(out, Json::object({{"operation", request->ippOperationCodename()},
                                        {"target", target.absoluteString()},
                                        {"status", statusText(answer->statusCode())},
                                        {"unsupported", unsupportedNames(*answer)}}));
  }
  out << harmless(done + reservations(*answer)) << '\n';
}

void writeJson(std::ostream& out, const Json& value) { out << value.text() << std::endl; }

}  // namespace platen::tool
