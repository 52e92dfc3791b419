// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tests/tool/MessageOctets.h"

namespace platen::test {

/// An answer about job 12. Its job-uri names a host that nobody shall be sent to.
inline std::string jobAnswer(int state, const std::string& reasons = "none") {
  return response(0, "\x02" + attribute(0x45, "job-uri", "ipp://third-party.invalid/jobs/12") +
                         attribute(0x21, "job-id", int32(12)) +
                         attribute(0x23, "job-state", int32(state)) +
                         attribute(0x44, "job-state-reasons", reasons));
}

/// What the command says first of that job.
inline const std::string kFirstLine = "job 12: ipp://third-party.invalid/jobs/12\n";

}  // namespace platen::test
