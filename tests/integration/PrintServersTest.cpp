// SPDX-License-Identifier: Apache-2.0
#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>

#include "tests/support/PrintServers.h"

// These tests speak to the servers by hand, without the library: when one of them fails, it is the
// servers, and not what is tested with them.

namespace platen::test {
namespace {

using namespace std::string_literals;
using std::chrono::steady_clock;

/// A TCP connection to a port of loopback, with a limit of 10 s on each wait.
class Connection {
 public:
  explicit Connection(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const timeval limit{10, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int code = ::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address);
    open_ = code == 0;
  }
  ~Connection() { ::close(socket_); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool isOpen() const { return open_; }

  bool send(std::string_view octets) {
    while (!octets.empty()) {
      const ssize_t count = ::send(socket_, octets.data(), octets.size(), MSG_NOSIGNAL);
      if (count <= 0) return false;
      octets.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  /// Everything up to `end` and at least `more` octets after it; less when the server closes.
  std::string receiveUntil(std::string_view end, std::size_t more = 0) {
    std::string text;
    char buffer[4096];
    for (;;) {
      const std::size_t found = text.find(end);
      if (found != std::string::npos && text.size() >= found + end.size() + more) return text;
      const ssize_t count = ::recv(socket_, buffer, sizeof buffer, 0);
      if (count <= 0) return text;
      text.append(buffer, static_cast<std::size_t>(count));
    }
  }

 private:
  int socket_;
  bool open_ = false;
};

bool isListening(int port) { return Connection(port).isOpen(); }

std::string statusLineOfGet(int port) {
  Connection connection(port);
  if (!connection.isOpen()) return "no connection";
  connection.send("GET / HTTP/1.1\r\nHost: localhost:" + std::to_string(port) + "\r\n\r\n");
  const std::string answer = connection.receiveUntil("\r\n\r\n");
  return answer.substr(0, answer.find("\r\n"));
}

/// An attribute with a value of fewer than 256 octets (RFC 8010 §3.1.4).
std::string attribute(char tag, const std::string& name, const std::string& value) {
  return tag + "\0"s + static_cast<char>(name.size()) + name + "\0"s +
         static_cast<char>(value.size()) + value;
}

std::string printJobRequest(const std::string& printerURI, const std::string& document) {
  return "\x01\x01\x00\x02\x00\x00\x00\x01"s + "\x01" +
         attribute('\x47', "attributes-charset", "utf-8") +
         attribute('\x48', "attributes-natural-language", "en") +
         attribute('\x45', "printer-uri", printerURI) +
         attribute('\x42', "requesting-user-name", "tester") +
         attribute('\x42', "job-name", "by hand") + "\x03" + document;
}

struct Answer {
  int status = -1;  // of IPP; -1: none came
  int jobId = 0;    // 0: none in the answer
};

int integerAt(const std::string& octets, std::size_t position, std::size_t count) {
  int value = 0;
  for (std::size_t i = 0; i < count; ++i)
    value = value << 8 | static_cast<unsigned char>(octets.at(position + i));
  return value;
}

Answer readAnswer(const std::string& octets) {
  Answer answer;
  const std::string headEnd = "\r\n\r\n";
  const std::size_t body = octets.find(headEnd);
  if (body == std::string::npos || octets.size() < body + 12) return answer;
  answer.status = integerAt(octets, body + headEnd.size() + 2, 2);
  const std::string jobId = "\x21\x00\x06job-id\x00\x04"s;
  const std::size_t found = octets.find(jobId, body);
  if (found != std::string::npos) answer.jobId = integerAt(octets, found + jobId.size(), 4);
  return answer;
}

Answer printJob(int port, const std::string& printerURI, const std::string& document) {
  const std::string request = printJobRequest(printerURI, document);
  Connection connection(port);
  connection.send("POST / HTTP/1.1\r\nHost: localhost:" + std::to_string(port) +
                  "\r\nContent-Type: application/ipp\r\nContent-Length: " +
                  std::to_string(request.size()) + "\r\n\r\n" + request);
  const std::string head = connection.receiveUntil("\r\n\r\n");
  const std::string field = "Content-Length: ";
  const std::size_t length = head.find(field);
  if (length == std::string::npos) return {};
  const std::size_t missing =
      std::stoul(head.substr(length + field.size())) - (head.size() - head.find("\r\n\r\n") - 4);
  return readAnswer(head + connection.receiveUntil("", missing));
}

std::string contentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

template <typename Condition>
bool becomesTrue(Condition condition) {
  const auto limit = steady_clock::now() + std::chrono::seconds(15);
  while (!condition()) {
    if (steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

class PrintServersTest : public ::testing::Test {
 protected:
  void SetUp() override {
    PrintServers& servers = PrintServers::shared();
    if (!servers.available()) GTEST_SKIP() << servers.whyUnavailable();
  }
};

const std::string kDocument = "%PDF-1.4\n\0\r\n\xFF not much of a page\n%%EOF\n"s;

TEST_F(PrintServersTest, CupsdAnswersOnItsPort) {
  // It has no web pages here, so there is nothing at the root.
  EXPECT_EQ(statusLineOfGet(PrintServers::shared().cupsPort()), "HTTP/1.1 404 Not Found");
}

TEST_F(PrintServersTest, IppeveprinterAnswersOnItsPort) {
  EXPECT_EQ(statusLineOfGet(PrintServers::shared().ippevePort()), "HTTP/1.1 200 OK");
}

TEST_F(PrintServersTest, AnAddedQueueTakesADocumentOctetForOctet) {
  PrintServers& servers = PrintServers::shared();
  servers.addQueue("plain");
  const Answer answer =
      printJob(servers.cupsPort(), servers.cupsURI() + "printers/plain", kDocument);
  ASSERT_EQ(answer.status, 0) << contentsOf(servers.cupsLog());
  EXPECT_EQ(contentsOf(servers.cupsDocument(answer.jobId)), kDocument);
}

TEST_F(PrintServersTest, AQueueThatWasNotAddedIsNotFound) {
  PrintServers& servers = PrintServers::shared();
  const Answer answer =
      printJob(servers.cupsPort(), servers.cupsURI() + "printers/missing", kDocument);
  EXPECT_EQ(answer.status, 0x0406);
}

TEST_F(PrintServersTest, AddQueueThrowsWhenCupsdRefuses) {
  EXPECT_THROW(PrintServers::shared().addQueue("odd", "no-such-scheme:/device"),
               std::runtime_error);
}

TEST_F(PrintServersTest, IppeveprinterTakesADocumentOctetForOctet) {
  PrintServers& servers = PrintServers::shared();
  servers.waitForIppeveIdle();
  const Answer answer = printJob(servers.ippevePort(), servers.ippeveURI(), kDocument);
  ASSERT_EQ(answer.status, 0) << contentsOf(servers.ippeveLog());
  servers.waitForIppeveIdle();
  EXPECT_EQ(contentsOf(servers.ippeveDocument(answer.jobId)), kDocument);
}

TEST_F(PrintServersTest, WaitForIppeveIdleOutlastsASlowJob) {
  PrintServers servers;
  servers.setIppeveDelay(1);
  const auto start = steady_clock::now();
  ASSERT_EQ(printJob(servers.ippevePort(), servers.ippeveURI(), kDocument).status, 0);
  EXPECT_EQ(printJob(servers.ippevePort(), servers.ippeveURI(), kDocument).status, 0x0507);
  servers.waitForIppeveIdle();
  EXPECT_GE(steady_clock::now() - start, std::chrono::seconds(1));
  EXPECT_EQ(printJob(servers.ippevePort(), servers.ippeveURI(), kDocument).status, 0);
}

/// Sets a variable of the environment for as long as it lives.
class Environment {
 public:
  Environment(const char* name, const char* value) : name_(name) { ::setenv(name, value, 1); }
  ~Environment() { ::unsetenv(name_); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  const char* name_;
};

TEST(PrintServersWithoutPrograms, AreNotAvailableAndSayWhy) {
  const Environment missing("CUPSD", "/no/such/program");
  const PrintServers servers;
  EXPECT_FALSE(servers.available());
  EXPECT_NE(servers.whyUnavailable().find("not installed"), std::string::npos);
  EXPECT_THROW(servers.cupsURI(), std::logic_error);
}

TEST_F(PrintServersTest, AServerThatDoesNotStartIsAFailureAndNoReasonToSkip) {
  const Environment broken("CUPSD", "/bin/false");
  EXPECT_THROW(PrintServers servers, std::runtime_error);
}

TEST_F(PrintServersTest, TheDestructorEndsBothServersAndRemovesTheirFolder) {
  int cupsPort = 0;
  int ippevePort = 0;
  std::filesystem::path spool;
  {
    PrintServers servers;
    cupsPort = servers.cupsPort();
    ippevePort = servers.ippevePort();
    spool = servers.cupsSpool();
    ASSERT_TRUE(isListening(cupsPort));
    ASSERT_TRUE(isListening(ippevePort));
    ASSERT_TRUE(std::filesystem::exists(spool));
  }
  EXPECT_FALSE(isListening(cupsPort));
  EXPECT_FALSE(isListening(ippevePort));
  EXPECT_FALSE(std::filesystem::exists(spool.parent_path().parent_path()));
}

/// In a child process: starts servers, tells the parent about them, and dies of SIGKILL.
[[noreturn]] void startServersAndDie(int report) {
  PrintServers servers;
  const std::string text = std::to_string(servers.cupsPort()) + " " +
                           std::to_string(servers.ippevePort()) + " " +
                           servers.cupsSpool().string();
  if (::write(report, text.data(), text.size()) > 0) ::raise(SIGKILL);
  ::_exit(1);
}

TEST_F(PrintServersTest, TheServersEndWithAProcessThatIsKilled) {
  int report[2];
  ASSERT_EQ(::pipe2(report, O_CLOEXEC), 0);
  const pid_t child = ::fork();
  if (child == 0) startServersAndDie(report[1]);
  ::close(report[1]);
  char text[512] = "";
  ASSERT_GT(::read(report[0], text, sizeof text - 1), 0);
  ::close(report[0]);
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));

  std::istringstream words(text);
  int cupsPort = 0;
  int ippevePort = 0;
  std::string spool;
  ASSERT_TRUE(words >> cupsPort >> ippevePort >> spool);
  const std::filesystem::path folder = std::filesystem::path(spool).parent_path().parent_path();
  EXPECT_TRUE(becomesTrue([&] { return !std::filesystem::exists(folder); }));
  EXPECT_FALSE(isListening(cupsPort));
  EXPECT_FALSE(isListening(ippevePort));
}

}  // namespace
}  // namespace platen::test
