// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "AnswerDifference.h"
#include "Commands.h"
#include "DifferenceLayout.h"
#include "Exchange.h"
#include "KeptMessage.h"
#include "LocalFile.h"
#include "MessageJson.h"
#include "MessageView.h"
#include "Report.h"
#include "platen/IPPRequest.h"
#include "platen/RunLoop.h"

namespace platen::tool {

namespace {

// One of the two that are compared: a file, which is read at once, or a printer, which is asked.
class Side {
 public:
  explicit Side(const std::string& word) {
    if (word.find("://") != std::string::npos) {
      printer_ = targetURI(word);
    } else {
      kept_ = messageIn(LocalFile(word));
    }
  }

  void start(double timeout) {
    if (printer_) {
      auto request = IPPRequest::printerAttributesRequest(*printer_);
      request->setTimeInterval(timeout);
      exchange_ = Exchange::start(std::move(request), *printer_);
    }
  }
  [[nodiscard]] bool isOver() const { return exchange_ == nullptr || exchange_->isOver(); }
  // Once it is over.
  KeptMessage message() {
    return exchange_ == nullptr ? std::move(kept_) : KeptMessage{exchange_->answer()};
  }

 private:
  std::optional<URL> printer_;
  std::shared_ptr<Exchange> exchange_;
  KeptMessage kept_;
};

// Of two that fail each gets its line, and the worse counts.
KeptMessage messageOf(Side& side, std::optional<Failure>& worst) {
  try {
    return side.message();
  } catch (const Failure& failure) {
    complain(failure.what());
    if (!worst || failure.status() > worst->status()) {
      worst = Failure(failure.status(), "");
    }
  }
  return {};
}

using Messages = std::array<KeptMessage, 2>;

Messages messagesOf(const DiffOptions& options) {
  if (options.before == "-" && options.after == "-") {
    throw Failure(ExitStatus::usage, "only one of the two can be standard input");
  }
  std::array sides{Side(options.before), Side(options.after)};
  for (Side& side : sides) {
    side.start(options.timeout);
  }
  while (!(sides[0].isOver() && sides[1].isOver())) {
    RunLoop::current()->runOnce(std::chrono::hours(1));
  }
  std::optional<Failure> worst;
  Messages messages{messageOf(sides[0], worst), messageOf(sides[1], worst)};
  if (worst) {
    throw Failure(*worst);
  }
  return messages;
}

// Writes what differs, with an empty line between groups.
class Differences {
 public:
  Differences(std::ostream& out, const Display& display)
      : out_(out), display_(display), layout_(display) {}

  void showCodes(const std::string& before, const std::string& after) {
    if (before != after) {
      begin(display_.strong("Message"));
      out_ << layout_.marked(Change::changed, before) << " -> " << after << '\n';
    }
  }

  void show(const GroupDifference& group) {
    std::string heading = headingOf(group.kind);
    if (!group.identity.empty()) {
      heading += " (" + group.identity + ")";
    }
    const bool isWhole = group.change != Change::changed;
    begin(isWhole ? layout_.marked(group.change, heading) : display_.strong(heading));
    for (const std::string& line : layout_.linesOf(group.values)) {
      out_ << line << '\n';
    }
  }

 private:
  void begin(const std::string& heading) {
    out_ << separator_ << heading << '\n';
    separator_ = "\n";
  }

  std::ostream& out_;
  Display display_;
  DifferenceLayout layout_;
  std::string_view separator_;
};

std::string_view nameOf(Change change) {
  switch (change) {
    case Change::added:
      return "added";
    case Change::removed:
      return "removed";
    case Change::changed:
      break;
  }
  return "changed";
}

Json jsonOf(const IPPValue* value) { return value == nullptr ? Json() : valuesJson(*value); }

Json jsonOf(const GroupDifference& group) {
  std::vector<Json> attributes;
  for (const ValueDifference& value : group.values) {
    attributes.push_back(Json::object({{"name", value.name},
                                       {"change", nameOf(value.change)},
                                       {"before", jsonOf(value.before)},
                                       {"after", jsonOf(value.after)}}));
  }
  return Json::object({{"group", group.kind},
                       {"identity", group.identity},
                       {"change", nameOf(group.change)},
                       {"attributes", attributes}});
}

void showJson(const Messages& messages, const std::vector<GroupDifference>& groups,
              std::ostream& out) {
  const auto codeOf = [](const KeptMessage& kept) {
    return codeText(*kept.message, kept.isRequest);
  };
  std::vector<Json> list;
  std::transform(groups.begin(), groups.end(), std::back_inserter(list),
                 [](const GroupDifference& group) { return jsonOf(group); });
  writeJson(out, Json::object({{"before", codeOf(messages[0])},
                               {"after", codeOf(messages[1])},
                               {"groups", list}}));
}

void showText(const Messages& messages, const std::vector<GroupDifference>& groups,
              const Display& display, std::ostream& out) {
  Differences differences(out, display);
  differences.showCodes(codeText(*messages[0].message, messages[0].isRequest),
                        codeText(*messages[1].message, messages[1].isRequest));
  for (const GroupDifference& group : groups) {
    differences.show(group);
  }
}

// Whether anything differs, which is shown.
bool showDifferences(const DiffOptions& options, std::ostream& out) {
  const Messages messages = messagesOf(options);
  const auto& [before, after] = messages;
  const auto groups = differencesBetween(*before.message, *after.message, options.ignored);
  if (options.json) {
    showJson(messages, groups, out);
  } else {
    showText(messages, groups, Display::ofStandardOutput(options.width), out);
  }
  out.flush();
  if (!out) {
    throw Failure(ExitStatus::usage, "cannot write to standard output");
  }
  return !groups.empty() ||
         codeText(*before.message, before.isRequest) != codeText(*after.message, after.isRequest);
}

// Status 1 says here that something differs.
bool showDifferencesOrTrouble(const DiffOptions& options, std::ostream& out) {
  try {
    return showDifferences(options, out);
  } catch (const Failure& failure) {
    throw Failure(std::max(failure.status(), ExitStatus::usage), failure.what());
  } catch (const std::exception& exception) {
    throw Failure(ExitStatus::usage, exception.what());
  }
}

}  // namespace

void diffAnswers(const DiffOptions& options, std::ostream& out) {
  if (showDifferencesOrTrouble(options, out)) {
    throw Failure(ExitStatus::failed, "");
  }
}

}  // namespace platen::tool
