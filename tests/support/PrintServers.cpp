// SPDX-License-Identifier: Apache-2.0
#include "tests/support/PrintServers.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#ifndef PLATEN_PRINT_SERVERS
#error "PLATEN_PRINT_SERVERS must be the path of tests/servers/print-servers, as a string"
#endif

namespace platen::test {
namespace {

constexpr int kProgramMissing = 77;

[[noreturn]] void throwSystemError(int code, const char* what) {
  throw std::system_error(code, std::generic_category(), what);
}

/// A descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return number_; }
  int release() { return std::exchange(number_, -1); }
  void reset() {
    if (number_ >= 0) ::close(release());
  }

 private:
  int number_;
};

struct Pipe {
  static Pipe make() {
    int ends[2];
    // Without close-on-exec any program that a test starts would keep the servers alive.
    if (::pipe2(ends, O_CLOEXEC) != 0) throwSystemError(errno, "pipe2");
    return Pipe(ends[0], ends[1]);
  }
  Descriptor input;
  Descriptor output;

 private:
  Pipe(int in, int out) : input(in), output(out) {}
};

/// Starts the script with these descriptors as its standard input and output; a session of its own
/// keeps the terminal's Ctrl-C from it.
pid_t spawnScript(const std::vector<std::string>& arguments, int input, int output) {
  std::vector<char*> argv{const_cast<char*>(PLATEN_PRINT_SERVERS)};
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  pid_t pid = -1;
  const int code =
      posix_spawn(&pid, PLATEN_PRINT_SERVERS, &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  if (code != 0) throwSystemError(code, PLATEN_PRINT_SERVERS);
  return pid;
}

std::string readToEnd(int descriptor) {
  std::string text;
  char buffer[4096];
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer, sizeof buffer);
    if (count == 0) return text;
    if (count > 0)
      text.append(buffer, static_cast<std::size_t>(count));
    else if (errno != EINTR)
      throwSystemError(errno, "read");
  }
}

/// The exit status, or -1 when a signal ended it.
int waitForExit(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0)
    if (errno != EINTR) throwSystemError(errno, "waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct Outcome {
  int status;
  std::string output;
};

Outcome runScript(const std::vector<std::string>& arguments, int input) {
  Pipe pipe = Pipe::make();
  const pid_t pid = spawnScript(arguments, input, pipe.output.get());
  pipe.output.reset();
  std::string output = readToEnd(pipe.input.get());
  return {waitForExit(pid), std::move(output)};
}

void runScriptOrThrow(const std::vector<std::string>& arguments) {
  const Descriptor nothing(::open("/dev/null", O_RDONLY | O_CLOEXEC));
  if (nothing.get() < 0) throwSystemError(errno, "/dev/null");
  const Outcome outcome = runScript(arguments, nothing.get());
  if (outcome.status != 0)
    throw std::runtime_error("print-servers " + arguments.front() + " failed");
}

std::filesystem::path makeFolder() {
  // Not $TMPDIR: every folder above must let the helper programs of cupsd pass, which run as lp.
  std::string name = "/tmp/platen-servers-XXXXXX";
  if (::mkdtemp(name.data()) == nullptr) throwSystemError(errno, "mkdtemp");
  if (::chmod(name.c_str(), 0711) != 0) throwSystemError(errno, "chmod");
  return name;
}

void waitUntilGone(const std::filesystem::path& folder) {
  using namespace std::chrono_literals;
  std::error_code ignored;
  const auto limit = std::chrono::steady_clock::now() + 10s;
  while (std::filesystem::exists(folder, ignored) && std::chrono::steady_clock::now() < limit)
    std::this_thread::sleep_for(5ms);
}

}  // namespace

PrintServers& PrintServers::shared() {
  struct Attempt {
    Attempt() {
      try {
        servers = std::make_unique<PrintServers>();
      } catch (const std::exception& exception) {
        failure = exception.what();
      }
    }
    std::unique_ptr<PrintServers> servers;
    std::string failure;
  };
  // A failed start is remembered: repeating it would cost each test its time-outs again.
  static Attempt attempt;
  if (!attempt.servers) throw std::runtime_error(attempt.failure);
  return *attempt.servers;
}

PrintServers::PrintServers() : folder_(makeFolder()), owner_(::getpid()) {
  try {
    start();
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    throw;
  }
}

void PrintServers::start() {
  Pipe lifeline = Pipe::make();
  const Outcome outcome = runScript({"hold", folder_.string()}, lifeline.input.get());
  available_ = outcome.status == 0;
  if (available_) {
    readSettings(outcome.output);
    lifeline_ = lifeline.output.release();
  } else if (outcome.status == kProgramMissing) {
    std::filesystem::remove_all(folder_);
  } else {
    throw std::runtime_error("the print servers do not start; standard error says why");
  }
}

PrintServers::~PrintServers() {
  if (lifeline_ < 0) return;
  ::close(lifeline_);
  // A forked child that leaves through exit() comes by here too; the servers are not its own.
  if (owner_ == ::getpid()) waitUntilGone(folder_);
}

void PrintServers::readSettings(const std::string& assignments) {
  std::istringstream lines(assignments);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos) settings_[line.substr(0, equals)] = line.substr(equals + 1);
  }
}

const std::string& PrintServers::setting(const std::string& name) const {
  const auto found = settings_.find(name);
  if (found == settings_.end()) throw std::logic_error("no print servers, so no " + name);
  return found->second;
}

std::string PrintServers::whyUnavailable() const {
  return "cupsd, ippeveprinter or ipptool is not installed (cups-daemon, cups-ipp-utils)";
}

std::filesystem::path PrintServers::cupsDocument(int jobId, int number) const {
  char name[32];
  std::snprintf(name, sizeof name, "d%05d-%03d", jobId, number);
  return cupsSpool() / name;
}

std::filesystem::path PrintServers::ippeveDocument(int jobId) const {
  const std::string prefix = std::to_string(jobId) + "-";
  for (const auto& entry : std::filesystem::directory_iterator(ippeveDocuments())) {
    // ID-NAME.prn is the output of the command that stands for the printing, not the document.
    const std::string name = entry.path().filename().string();
    if (name.rfind(prefix, 0) == 0 && entry.path().extension() != ".prn") return entry.path();
  }
  return {};
}

void PrintServers::addQueue(const std::string& name, const std::string& deviceURI,
                            const std::filesystem::path& ppd) const {
  runScriptOrThrow({"add-queue", folder_.string(), name, deviceURI, ppd.string()});
}

void PrintServers::waitForIppeveIdle() const { runScriptOrThrow({"await-idle", folder_.string()}); }

void PrintServers::setIppeveDelay(int seconds) const {
  const std::filesystem::path file = ippeveDocuments().parent_path() / "delay";
  std::filesystem::remove(file);
  if (seconds > 0) std::ofstream(file) << seconds << '\n';
}

}  // namespace platen::test
