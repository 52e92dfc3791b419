// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace platen::test {

/// Two real print servers on loopback, cupsd and ippeveprinter, in a fresh private folder under
/// /tmp. They run from construction to destruction, which also removes the folder. They also end
/// when the test process crashes or is killed: it holds a pipe, whose end ends them.
///
/// A test says
///
///     PrintServers& servers = PrintServers::shared();
///     if (!servers.available()) GTEST_SKIP() << servers.whyUnavailable();
///
/// Threads: one thread at a time may use an object; shared() may be called from any.
class PrintServers {
 public:
  /// The pair that the tests of one process share, started on first use (0.2 s) and stopped at the
  /// exit of the process. Throws std::runtime_error, at every call, when the servers are installed
  /// but do not start: that is a failure and no reason to skip.
  static PrintServers& shared();

  /// Starts a pair of its own, for a test that must not disturb the others. The ports are free
  /// ones. Throws as shared() does.
  PrintServers();
  ~PrintServers();
  PrintServers(const PrintServers&) = delete;
  PrintServers& operator=(const PrintServers&) = delete;

  /// False when a program is not installed; then nothing runs and the accessors below throw
  /// std::logic_error.
  bool available() const { return available_; }
  /// The text for GTEST_SKIP.
  std::string whyUnavailable() const;

  /// The root of cupsd, `ipp://localhost:PORT/`. A queue is at cupsURI() + "printers/NAME".
  std::string cupsURI() const { return setting("CUPS_URI"); }
  /// The one printer of ippeveprinter, `ipp://localhost:PORT/ipp/print`.
  std::string ippeveURI() const { return setting("IPPEVE_URI"); }
  int cupsPort() const { return std::stoi(setting("CUPS_PORT")); }
  int ippevePort() const { return std::stoi(setting("IPPEVE_PORT")); }

  /// The folder where cupsd keeps what it received, also of finished jobs.
  std::filesystem::path cupsSpool() const { return setting("CUPS_SPOOL"); }
  /// The document `number` (from 1) of the job, octet for octet what arrived for a raw queue.
  /// The path only: it need not exist.
  std::filesystem::path cupsDocument(int jobId, int number = 1) const;
  /// The folder where ippeveprinter keeps what it received.
  std::filesystem::path ippeveDocuments() const { return setting("IPPEVE_DOCUMENTS"); }
  /// The document of the job, octet for octet what arrived; empty when there is none.
  std::filesystem::path ippeveDocument(int jobId) const;
  /// Whether cupsd can list devices and drivers: it needs programs for that which scripts/setup
  /// gets where it can. Without them it answers with server-error-internal-error.
  bool cupsListsDevices() const { return setting("CUPS_LISTS_DEVICES") == "yes"; }
  /// The logs, for the message of a failing test.
  std::filesystem::path cupsLog() const { return setting("CUPS_LOG"); }
  std::filesystem::path ippeveLog() const { return setting("IPPEVE_LOG"); }

  /// Adds a queue to cupsd, idle and accepting jobs, or changes the one of that name. Without a PPD
  /// it is a raw queue. The device `testdev:/SECONDS` takes that long for a job. The names
  /// `private` `secure` and `forbidden` have access rules of their own. Throws std::runtime_error
  /// when cupsd refuses; its reason is on standard error.
  void addQueue(const std::string& name, const std::string& deviceURI = "file:///dev/null",
                const std::filesystem::path& ppd = {}) const;

  /// Waits until ippeveprinter takes jobs: while it has one, it answers every other with
  /// server-error-busy. Throws std::runtime_error after 20 s.
  void waitForIppeveIdle() const;
  /// How many seconds each later job of ippeveprinter takes; 0, as at the start, is next to
  /// nothing.
  void setIppeveDelay(int seconds) const;

 private:
  void start();
  void readSettings(const std::string& assignments);
  const std::string& setting(const std::string& name) const;

  std::filesystem::path folder_;
  std::map<std::string, std::string> settings_;
  bool available_ = false;
  int lifeline_ = -1;
  pid_t owner_;
};

}  // namespace platen::test
