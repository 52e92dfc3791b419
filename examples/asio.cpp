// SPDX-License-Identifier: Apache-2.0
//
// asio URI [FILE]: Platen in a program with an Asio io_context.

#include <platen/adapters/Asio.h>

#include <optional>

#include "Question.h"

int main(int argc, char** argv) {
  asio::io_context context;
  std::optional<platen::AsioAdapter> platen(context);
  // Without the adapter nothing is left to do in the context, whose run therefore returns.
  const auto question = Question::ask(argc, argv, [&platen] { platen.reset(); });
  context.run();
  return question->exitStatus();
}
