// SPDX-License-Identifier: Apache-2.0
//
// libuv URI [FILE]: Platen in a program with a libuv loop of its own.

#include <platen/adapters/LibUV.h>

#include <optional>

#include "Question.h"

int main(int argc, char** argv) {
  uv_loop_t* const loop = uv_default_loop();
  std::optional<platen::LibUVAdapter> platen(loop);
  // Without the adapter nothing is left to do in the loop, which therefore returns.
  const auto question = Question::ask(argc, argv, [&platen] { platen.reset(); });
  uv_run(loop, UV_RUN_DEFAULT);
  uv_loop_close(loop);
  return question->exitStatus();
}
