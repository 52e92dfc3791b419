// SPDX-License-Identifier: Apache-2.0
//
// poll URI [FILE]: Platen in a program that waits with poll.

#include <platen/adapters/Poll.h>

#include <array>

#include "Question.h"

int main(int argc, char** argv) {
  platen::PollAdapter platen;
  const auto question = Question::ask(argc, argv, [] {});
  while (!question->isAnswered()) {
    // The program's own descriptors would stand beside Platen's.
    std::array entries{platen.entry()};
    poll(entries.data(), entries.size(), platen.timeout());
    platen.runOnce();
  }
  return question->exitStatus();
}
