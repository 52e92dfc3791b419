// SPDX-License-Identifier: Apache-2.0
#include "Server.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "Exchange.h"
#include "Failure.h"
#include "platen/IPPURI.h"

namespace platen::tool {

namespace {

bool isURI(const std::string& word) { return word.find("://") != std::string::npos; }

// RFC 8011 §5.3.1: from 1 on.
bool isJobNumber(const std::string& word) {
  std::int32_t number = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && rest == end && number > 0;
}

// What cannot stand in the path of a queue, whoever the server is.
bool isQueueName(const std::string& word) {
  return !word.empty() && word.find_first_of("/?#") == std::string::npos;
}

URL require(const std::optional<URL>& uri, const std::string& reason) {
  if (!uri) {
    throw Failure(ExitStatus::usage, reason);
  }
  return *uri;
}

// What a server has, and how a short word stands for its URI.
struct Kind {
  std::string_view shortWord;
  bool (*isShortWord)(const std::string& word);
  std::optional<URL> (*uri)(const std::string& server, const std::string& word);
};

std::optional<URL> namedQueue(const std::string& server, const std::string& name) {
  return IPPURI::namedCUPSServerNamedPrinterURI(server, URL::escapePath(name));
}

// Print servers do not know a job by its bare number at their root, which `namedServerJobURI` is.
std::optional<URL> numberedJob(const std::string& server, const std::string& number) {
  return IPPURI::namedServerResourceURI(server, "jobs/" + number);
}

constexpr Kind kQueue{"the name of a queue", &isQueueName, &namedQueue};
constexpr Kind kJob{"the number of a job", &isJobNumber, &numberedJob};

URL uriOf(const std::string& word, const Kind& kind, const ServerOptions& options) {
  if (isURI(word)) {
    return targetURI(word);
  }
  const std::string reason =
      "\"" + word + "\" is neither " + std::string(kind.shortWord) + " nor a URI";
  if (!kind.isShortWord(word)) {
    throw Failure(ExitStatus::usage, reason);
  }
  serverURI(options);  // refuses a server that is none, which would be blamed on the word below
  return require(kind.uri(options.server, word), reason);
}

}  // namespace

URL serverURI(const ServerOptions& options) {
  const std::string reason = "\"" + options.server + "\" is not a server: say HOST or HOST:PORT";
  URL uri = require(IPPURI::namedServerURI(options.server), reason);
  const bool isPlain = options.server.find_first_of("/?#@") == std::string::npos;
  if (!isPlain || uri.host().value_or("").empty()) {
    throw Failure(ExitStatus::usage, reason);
  }
  return uri;
}

URL queueURI(const std::string& word, const ServerOptions& options) {
  return uriOf(word, kQueue, options);
}

URL queueOrServerURI(const std::optional<std::string>& word, const ServerOptions& options) {
  return word ? queueURI(*word, options) : serverURI(options);
}

URL jobURI(const std::string& word, const ServerOptions& options) {
  return uriOf(word, kJob, options);
}

std::string queueTitle(const URL& queue) {
  const auto name = IPPURI::printQueueName(queue);
  return name ? "queue " + *name : "the queue " + std::string(queue.absoluteString());
}

std::string jobTitle(const URL& job) {
  const auto number = IPPURI::jobId(job);
  return number.value_or(0) > 0 ? "job " + std::to_string(*number)
                                : "the job " + std::string(job.absoluteString());
}

std::string queueName(const std::string& uri) {
  const auto url = URL::parse(uri);
  const std::string name = url ? url->lastPathComponent() : "";
  return name == "/" ? "" : name;
}

}  // namespace platen::tool
