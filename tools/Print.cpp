// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>

#include "Commands.h"
#include "DisplayText.h"
#include "DocumentFormat.h"
#include "DocumentStream.h"
#include "Exchange.h"
#include "Job.h"
#include "LocalFile.h"
#include "OptionText.h"
#include "Progress.h"
#include "Report.h"
#include "Waiting.h"
#include "platen/IPPRequest.h"
#include "platen/IPPValue.h"
#include "platen/TextEncoding.h"

namespace platen::tool {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kFirstPause{200};
constexpr milliseconds kLongestPause{2000};

// A file's own name serves only when people can read it.
std::string jobName(const PrintOptions& options) {
  if (options.name || options.file == "-") {
    return options.name.value_or("");
  }
  const std::string name = std::filesystem::path(options.file).filename().string();
  return harmless(name) == name ? name : "";
}

void addFormat(IPPRequest& request, const std::string& format) {
  withOption("--format", format, TextEncoding::ascii(), [&] {
    request.addOperationValue(IPPValue::mimeMediaType(format), "document-format");
  });
}

// All but a format that is yet to be guessed.
IPPRequest::Pointer requestFor(const PrintOptions& options, const URL& printer) {
  auto request = IPPRequest::jobPrintRequest(printer);
  request->setTimeInterval(options.timeout);
  if (const std::string name = jobName(options); !name.empty()) {
    withOption("--name", name, TextEncoding::utf8(), [&] {
      request->addOperationValue(IPPValue::nameWithoutLanguage(name), "job-name");
    });
  }
  if (options.format) {
    addFormat(*request, *options.format);
  }
  return request;
}

IPPRequest::Pointer questionAbout(const Job& job, double timeout) {
  const std::array<std::string, 3> names{"job-id", "job-state", "job-state-reasons"};
  auto request = IPPRequest::jobAttributesRequest(*job.uri());
  request->setTimeInterval(timeout);
  request->setRequestedAttributes(names);
  return request;
}

IPPRequest::Pointer cancellationOf(const Job& job, double timeout) {
  auto request = IPPRequest::jobCancelRequest(*job.uri());
  request->setTimeInterval(timeout);
  return request;
}

// One run of the command.
class Printing {
 public:
  Printing(const PrintOptions& options, std::ostream& out)
      : options_(options),
        out_(out),
        printer_(targetURI(options.uri)),
        file_(options.file),
        document_(std::make_shared<DocumentStream>(file_.descriptor())),
        progress_(!options.quiet),
        waiting_(progress_) {}

  void run() {
    try {
      print();
      if (options_.wait) {
        waitForEnd();
      } else {
        tell();
      }
    } catch (const Interrupted& interrupted) {
      progress_.erase();
      throw Failure(interrupted.status(), giveUp());
    }
  }

 private:
  void print() {
    const auto request = requestFor(options_, printer_);
    readHead();
    if (!options_.format) {
      addFormat(*request, std::string(guessedFormat(document_->head())));
    }
    progress_.show([this](auto columns, auto elapsed) { return transferText(columns, elapsed); });
    const auto exchange = Exchange::start(request, printer_, document_);
    waiting_.until([&] { return exchange->isOver(); });
    requireWholeDocument();
    job_.emplace(*exchange->answer());
    progress_.erase();
    if (job_->uri() && !options_.json) {
      out_ << job_->title() << ": " << harmless(job_->uri()->absoluteString()) << '\n';
    }
    follow(*job_);
    if (!job_->isOver()) {
      waiting_.raiseInterrupt();  // which may have come in the same turn as the job
    }
  }

  // Nothing is sent of a document that is empty or cannot be read. Of one whose format is given,
  // the first octet says enough.
  void readHead() {
    progress_.show([this](auto, auto) { return "waiting for " + file_.displayName(); });
    const std::size_t length = options_.format ? 1 : kFormatHeadLength;
    do {
      waiting_.untilReadable(file_.descriptor());
    } while (document_->readHead(length));
    if (const auto error = document_->streamError()) {
      file_.fail(error->code());
    }
    if (document_->head().empty()) {
      throw Failure(ExitStatus::failed, file_.displayName() + " is empty: nothing to print");
    }
  }

  std::string transferText(std::size_t columns, Progress::Clock::duration elapsed) const {
    return document_->isSentWhole()
               ? sizeText(static_cast<double>(document_->sent())) + " sent, waiting for the answer"
               : transferLine(document_->sent(), file_.length(), elapsed, columns);
  }

  void requireWholeDocument() const {
    if (const auto error = document_->streamError()) {
      throw Failure(ExitStatus::failed,
                    "the document was cut short, " + file_.displayName() + ": " +
                        std::string(error->localizedDescription().value_or("")));
    }
  }

  // The state of the job as `next` has it; the rest is not told a second time.
  void follow(const Job& next) {
    if (state_ && next.stateText() == state_->stateText()) {
      return;
    }
    state_ = next;
    progress_.erase();
    if (!options_.json) {
      out_ << job_->title() << ": " << state_->stateText() << std::endl;
    }
  }

  // For scripts, once, when there is no more to come.
  void tell() {
    if (options_.json) {
      progress_.erase();
      writeJson(out_, state_->json(*job_));
    }
  }

  void waitForEnd() {
    if (!job_->uri()) {
      throw Failure(ExitStatus::failed, "cannot wait: the printer gave the job no job-uri");
    }
    progress_.show([this](auto, auto elapsed) { return stateLine(elapsed); });
    for (milliseconds pause = kFirstPause; !state_->isOver();
         pause = std::min(pause * 3 / 2, kLongestPause)) {
      waiting_.pause(pause);
      const Job next(*ask(questionAbout(*job_, options_.timeout)));
      if (!next.hasState()) {
        throw Failure(ExitStatus::failed,
                      "the printer does not tell the state of " + job_->title());
      }
      follow(next);
    }
    tell();
    if (!state_->isCompleted()) {
      throw Failure(ExitStatus::failed, job_->title() + " was not printed: " + state_->stateText());
    }
  }

  std::string stateLine(Progress::Clock::duration elapsed) const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
    return job_->title() + ": " + state_->stateText() + ", " + std::to_string(seconds) + " s";
  }

  // The printer is asked itself, whatever host its job-uri names: an answer shall not send anyone
  // to a third party.
  IPPResponse::Pointer ask(IPPRequest::Pointer request) {
    return answerTo(std::move(request), printer_, waiting_);
  }

  // What was begun is undone as far as possible; the line says how far that was.
  std::string giveUp() {
    if (job_) {
      return cancelJob();
    }
    if (document_->sent() == 0) {
      return "canceled: nothing was sent";
    }
    return document_->isSentWhole()
               ? "canceled, but the document was sent: the printer, which had not answered, may "
                 "print it"
               : "canceled: the document was not sent whole; some printers print what they got";
  }

  std::string cancelJob() {
    const std::string title = job_->title();
    if (!job_->uri()) {
      return title + " was not canceled: the printer gave it no job-uri";
    }
    try {
      progress_.show([title](auto, auto) { return "canceling " + title; });
      ask(cancellationOf(*job_, options_.timeout));
      return "canceled " + title;
    } catch (const Failure& failure) {
      return title + " was not canceled: " + failure.what();
    }
  }

  const PrintOptions& options_;
  std::ostream& out_;
  const URL printer_;
  const LocalFile file_;
  const std::shared_ptr<DocumentStream> document_;
  Progress progress_;
  Waiting waiting_;
  /// As the answer to the document tells it, with its number and URI.
  std::optional<Job> job_;
  /// As the latest answer tells it.
  std::optional<Job> state_;
};

}  // namespace

void printFile(const PrintOptions& options, std::ostream& out) { Printing(options, out).run(); }

}  // namespace platen::tool
