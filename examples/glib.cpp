// SPDX-License-Identifier: Apache-2.0
//
// glib URI [FILE]: Platen in a program with a GLib main loop, such as one that uses GTK.

#include <platen/adapters/GLib.h>

#include "Question.h"

int main(int argc, char** argv) {
  GMainLoop* const loop = g_main_loop_new(nullptr, FALSE);
  const platen::GLibAdapter platen;
  const auto question = Question::ask(argc, argv, [loop] { g_main_loop_quit(loop); });
  if (!question->isAnswered()) {
    g_main_loop_run(loop);
  }
  g_main_loop_unref(loop);
  return question->exitStatus();
}
