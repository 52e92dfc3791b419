// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <ostream>
#include <thread>
#include <utility>

#include "Commands.h"
#include "DisplayText.h"
#include "DocumentFormat.h"
#include "Exchange.h"
#include "Job.h"
#include "LocalFile.h"
#include "platen/Exception.h"
#include "platen/IPPRequest.h"
#include "platen/IPPValue.h"
#include "platen/TextEncoding.h"

namespace platen::tool {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstPause{200};
constexpr milliseconds kLongestPause{2000};

struct Document {
  std::shared_ptr<InputStream> stream;
  std::string_view format;
};

// What cannot be looked at without being used up (a pipe) is read now, anything else when sent.
Document documentOf(const LocalFile& file) {
  Data octets = file.isRegular() ? file.peek(kFormatHeadLength) : file.readAll();
  if (octets.empty()) {
    throw Failure(ExitStatus::failed, file.displayName() + " is empty: nothing to print");
  }
  const std::string_view format = guessedFormat(octets);
  return {file.isRegular() ? InputStream::withFileDescriptor(file.descriptor())
                           : InputStream::withData(std::move(octets)),
          format};
}

// What the command line gives and a value cannot hold is wrong usage.
template <class Make>
IPPValue::Pointer valueFrom(const std::string& option, const std::string& text,
                            TextEncoding encoding, Make make) {
  if (!encoding.encode(text)) {
    throw Failure(ExitStatus::usage, option + " \"" + text + "\" is not " + encoding.name());
  }
  try {
    return make(text);
  } catch (const Exception&) {
    throw Failure(ExitStatus::usage, option + " \"" + text + "\" is too long");
  }
}

// A file's own name serves only when people can read it.
std::string jobName(const PrintOptions& options) {
  if (options.name || options.file == "-") {
    return options.name.value_or("");
  }
  const std::string name = std::filesystem::path(options.file).filename().string();
  return harmless(name) == name ? name : "";
}

IPPRequest::Pointer requestFor(const PrintOptions& options, const URL& printer,
                               std::string_view guessed) {
  auto request = IPPRequest::jobPrintRequest(printer);
  request->setTimeInterval(options.timeout);
  if (const std::string name = jobName(options); !name.empty()) {
    request->addOperationValue(
        valueFrom("--name", name, TextEncoding::utf8(), &IPPValue::nameWithoutLanguage),
        "job-name");
  }
  const std::string format = options.format.value_or(std::string(guessed));
  request->addOperationValue(
      valueFrom("--format", format, TextEncoding::ascii(), &IPPValue::mimeMediaType),
      "document-format");
  return request;
}

// The printer is asked itself, whatever host its job-uri names: an answer shall not send anyone to
// a third party.
Job askFor(const Job& job, const URL& printer, double timeout) {
  const std::array<std::string, 3> names{"job-id", "job-state", "job-state-reasons"};
  auto request = IPPRequest::jobAttributesRequest(*job.uri());
  request->setTimeInterval(timeout);
  request->setRequestedAttributes(names);
  return Job(*perform(*request, printer));
}

void report(std::ostream& out, const std::string& title, const Job& job) {
  out << title << ": " << job.stateText() << std::endl;
}

Job waitForEnd(Job job, const PrintOptions& options, const URL& printer, std::ostream& out) {
  const Job first = job;
  for (milliseconds pause = kFirstPause; !job.isOver();
       pause = std::min(pause * 3 / 2, kLongestPause)) {
    std::this_thread::sleep_for(pause);
    Job next = askFor(first, printer, options.timeout);
    if (!next.hasState()) {
      throw Failure(ExitStatus::failed, "the printer does not tell the state of " + first.title());
    }
    if (next.stateText() != job.stateText()) {
      report(out, first.title(), next);
    }
    job = std::move(next);
  }
  return job;
}

void requireUncut(const Document& document, const LocalFile& file) {
  if (const auto error = document.stream->streamError()) {
    throw Failure(ExitStatus::failed, "the document was cut short, " + file.displayName() + ": " +
                                          std::string(error->localizedDescription().value_or("")));
  }
}

}  // namespace

void printFile(const PrintOptions& options, std::ostream& out) {
  const URL printer = targetURI(options.uri);
  const LocalFile file(options.file);
  const Document document = documentOf(file);
  const auto request = requestFor(options, printer, document.format);
  const Job job(*perform(*request, printer, document.stream));
  if (job.uri()) {
    out << job.title() << ": " << harmless(job.uri()->absoluteString()) << '\n';
  }
  report(out, job.title(), job);
  requireUncut(document, file);
  if (!options.wait) {
    return;
  }
  if (!job.uri()) {
    throw Failure(ExitStatus::failed, "cannot wait: the printer gave the job no job-uri");
  }
  const Job last = waitForEnd(job, options, printer, out);
  if (!last.isCompleted()) {
    throw Failure(ExitStatus::failed, job.title() + " was not printed: " + last.stateText());
  }
}

}  // namespace platen::tool
