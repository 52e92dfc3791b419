// SPDX-License-Identifier: Apache-2.0
#include "Interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace platen::tool {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

// What the handler may use.
volatile std::sig_atomic_t firstSignal = 0;
volatile std::sig_atomic_t hasTerminal = 0;
std::array<int, 2> wakeUpPipe{-1, -1};

extern "C" void noteSignal(int number) {
  const int errnoBefore = errno;
  if (firstSignal != 0) {
    // Whatever line stood there, the shell's prompt begins a new one.
    [[maybe_unused]] const auto written = hasTerminal == 0 ? 0 : ::write(STDERR_FILENO, "\n", 1);
    ::_exit(static_cast<int>(ExitStatus::signal) + number);
  }
  firstSignal = number;
  [[maybe_unused]] const auto written = ::write(wakeUpPipe[1], "", 1);
  errno = errnoBefore;
}

void watch(int number) {
  struct sigaction before {};
  ::sigaction(number, nullptr, &before);
  if (before.sa_handler != SIG_IGN) {  // by nohup, or by a shell that runs us in the background
    struct sigaction action {};
    action.sa_handler = &noteSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
  }
}

void unwatch(int number) {
  struct sigaction now {};
  ::sigaction(number, nullptr, &now);
  if (now.sa_handler == &noteSignal) {
    std::signal(number, SIG_DFL);
  }
}

}  // namespace

Interrupt::Interrupt() {
  if (::pipe2(wakeUpPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "cannot watch for signals");
  }
  firstSignal = 0;
  hasTerminal = ::isatty(STDERR_FILENO);
  for (const int number : kSignals) {
    watch(number);
  }
}

Interrupt::~Interrupt() {
  for (const int number : kSignals) {
    unwatch(number);
  }
  for (const int descriptor : wakeUpPipe) {
    ::close(descriptor);
  }
}

int Interrupt::descriptor() const noexcept { return wakeUpPipe[0]; }

void Interrupt::raise() const {
  char octet = 0;
  if (::read(wakeUpPipe[0], &octet, 1) == 1) {
    throw Interrupted(firstSignal);
  }
}

}  // namespace platen::tool
