// SPDX-License-Identifier: Apache-2.0
//
// epoll URI [FILE]: Platen in a program that waits with epoll_wait.

#include <platen/adapters/Epoll.h>
#include <unistd.h>

#include <array>

#include "Question.h"

int main(int argc, char** argv) {
  const int epoll = epoll_create1(EPOLL_CLOEXEC);
  int exitStatus = 1;
  {
    platen::EpollAdapter platen(epoll);
    const auto question = Question::ask(argc, argv, [] {});
    while (!question->isAnswered()) {
      std::array<epoll_event, 16> events;
      epoll_wait(epoll, events.data(), static_cast<int>(events.size()), platen.timeout());
      platen.runOnce();
      // The program's own events would be handled here.
    }
    exitStatus = question->exitStatus();
  }
  close(epoll);
  return exitStatus;
}
