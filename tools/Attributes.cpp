// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

#include "Commands.h"
#include "DisplayText.h"
#include "Exchange.h"
#include "Facts.h"
#include "Interrupt.h"
#include "KeyPathText.h"
#include "MessageJson.h"
#include "MessageView.h"
#include "Progress.h"
#include "Report.h"
#include "SavedAnswer.h"
#include "Waiting.h"
#include "platen/IPPRequest.h"
#include "platen/TextEncoding.h"

namespace platen::tool {

namespace {

bool isPattern(const std::string& name) { return name.find_first_of("*?") != std::string::npos; }

bool hasPatterns(const std::vector<std::string>& names) {
  return std::any_of(names.begin(), names.end(), &isPattern);
}

// RFC 8011 §5.1.4.
void requireKeyword(const std::string& name) {
  constexpr std::size_t kLongestKeyword = 255;
  if (name.empty() || name.size() > kLongestKeyword || !TextEncoding::ascii().encode(name)) {
    throw Failure(ExitStatus::usage, "\"" + name + "\" is not the name of an attribute");
  }
}

// Patterns are this command's own: with one among the names, the printer is asked for all.
IPPRequest::Pointer requestFor(const AttributesOptions& options, const URL& printer) {
  auto request = IPPRequest::printerAttributesRequest(printer);
  request->setTimeInterval(options.timeout);
  if (!options.names.empty() && !hasPatterns(options.names)) {
    request->setRequestedAttributes(options.names);
  }
  return request;
}

bool isBefore(const std::shared_ptr<IPPAttribute>& left,
              const std::shared_ptr<IPPAttribute>& right) {
  return left->name().value_or("") < right->name().value_or("");
}

// Those of `group` that one of `patterns` matches, in the group's order.
IPPAttributeGroup::Attributes matching(const IPPAttributeGroup& group,
                                       const std::vector<std::string>& patterns) {
  IPPAttributeGroup::Attributes wanted;
  for (const std::string& pattern : patterns) {
    const auto found = group.attributesForName(pattern);
    wanted.insert(wanted.end(), found.begin(), found.end());
  }
  return wanted;
}

// A printer's own order is of no help to a reader: by name, and what two patterns match once.
IPPAttributeGroup::Pointer arranged(const IPPAttributeGroup& group,
                                    IPPAttributeGroup::Attributes attributes) {
  std::stable_sort(attributes.begin(), attributes.end(), &isBefore);
  attributes.erase(std::unique(attributes.begin(), attributes.end()), attributes.end());
  auto result = group.ippClass().make();
  result->addAttributesFromArray(attributes);
  return result;
}

// Without names everything; with names only what was asked for, and what was refused.
IPPMessage::Groups groupsToShow(const IPPMessage& answer, const std::vector<std::string>& names) {
  IPPMessage::Groups groups;
  for (const auto& group : answer.ippGroups()) {
    const bool isOperation = group->name() == kIPPOperationGroupName;
    const auto attributes = hasPatterns(names) ? matching(*group, names) : group->attributes();
    if (names.empty() || (!isOperation && !attributes.empty())) {
      groups.push_back(arranged(*group, attributes));
    }
  }
  return groups;
}

bool hasAnswer(const IPPMessage::Groups& groups) {
  return std::any_of(groups.begin(), groups.end(), [](const auto& group) {
    return group->name() == kIPPPrinterGroupName && !group->attributes().empty();
  });
}

IPPAttributeGroup::Attributes attributesOf(const IPPMessage::Groups& groups,
                                           std::string_view name) {
  IPPAttributeGroup::Attributes all;
  for (const auto& group : groups) {
    if (group->name() == name) {
      all.insert(all.end(), group->attributes().begin(), group->attributes().end());
    }
  }
  return all;
}

Json jsonOf(const IPPMessage::Groups& groups, std::int32_t status, const std::string& uri) {
  return Json::object(
      {{"uri", uri},
       {"status", statusText(status)},
       {"attributes", attributesJson(attributesOf(groups, kIPPPrinterGroupName))},
       {"unsupported", attributesJson(attributesOf(groups, kIPPUnsupportedAttributesGroupName))}});
}

// Writes one answer after the other.
class Answers {
 public:
  Answers(const AttributesOptions& options, std::ostream& out)
      : options_(options), out_(out), display_(Display::ofStandardOutput(options.width)) {}

  void show(const IPPResponse& answer, const std::string& uri) {
    if (options_.key) {
      return showKey(answer, uri);
    }
    const auto groups = groupsToShow(answer, options_.names);
    if (options_.json) {
      values_.push_back(jsonOf(groups, answer.statusCode(), uri));
    } else {
      write(groups, answer, uri);
    }
    if (!options_.names.empty() && !hasAnswer(groups)) {
      throw Failure(ExitStatus::failed,
                    uri + " has no attribute of that name: " + joined(options_.names, " "));
    }
  }

  /// What is to be written in one piece.
  void finish() {
    if (options_.json) {
      writeJson(out_, values_);
    }
  }

 private:
  void write(const IPPMessage::Groups& groups, const IPPResponse& answer, const std::string& uri) {
    const bool isWhole = answer.statusCode() == 0;
    if (options_.uris.size() > 1 && !(groups.empty() && isWhole)) {
      out_ << std::exchange(separator_, "\n") << display_.strong(harmless(uri)) << '\n';
    }
    if (!isWhole) {
      out_ << statusText(answer.statusCode()) << "\n\n";
    }
    showGroups(out_, groups, display_);
    out_.flush();
  }

  void showKey(const IPPResponse& answer, const std::string& uri) {
    const Lines lines = linesAtKeyPath(answer, *options_.key, uri);
    if (options_.uris.size() > 1) {
      out_ << std::exchange(separator_, "\n") << display_.strong(harmless(uri)) << '\n';
    }
    writeLines(lines, out_);
    out_.flush();
  }

  const AttributesOptions& options_;
  std::ostream& out_;
  Display display_;
  std::string_view separator_;
  std::vector<Json> values_;
};

using Exchanges = std::vector<std::shared_ptr<Exchange>>;

// All on one run loop. Dead name servers shall not keep the living waiting in a queue: each look-up
// gets a thread, of which the library's pool gives half to them.
Exchanges startAll(const AttributesOptions& options) {
  const std::size_t threads = std::clamp<std::size_t>(2 * options.uris.size(), 4, 512);
  ::setenv("UV_THREADPOOL_SIZE", std::to_string(threads).c_str(), 0);
  std::vector<URL> printers;
  std::transform(options.uris.begin(), options.uris.end(), std::back_inserter(printers),
                 &targetURI);
  Exchanges exchanges;
  for (const URL& printer : printers) {
    exchanges.push_back(Exchange::start(requestFor(options, printer), printer));
  }
  return exchanges;
}

IPPResponse::Pointer answerOf(const Exchange& exchange, Waiting& waiting) {
  waiting.until([&] { return exchange.isOver(); });
  return exchange.answer();
}

// False when it could not be kept, which has been told then: it is shown all the same.
bool isKept(const IPPResponse& answer, const std::string& path) {
  try {
    saveAnswer(answer, path);
  } catch (const Failure& failure) {
    complain(failure.what());
    return false;
  }
  return true;
}

// Known before anybody is asked.
void requireOneToKeep(const AttributesOptions& options) {
  if (options.save && options.uris.size() > 1) {
    throw Failure(ExitStatus::usage, "--save keeps the answer of one printer");
  }
  if (options.save && (options.save->empty() || *options.save == "-")) {
    throw Failure(ExitStatus::usage, "--save needs the name of a file");
  }
}

// What the first has to say is shown while the others are still waited for.
ExitStatus showAll(const Exchanges& exchanges, const AttributesOptions& options, Answers& answers,
                   Waiting& waiting) {
  ExitStatus worst = ExitStatus::done;
  for (std::size_t index = 0; index < exchanges.size(); ++index) {
    try {
      const auto answer = answerOf(*exchanges[index], waiting);
      if (options.save && !isKept(*answer, *options.save)) {
        worst = std::max(worst, ExitStatus::failed);
      }
      answers.show(*answer, options.uris[index]);
    } catch (const Failure& failure) {
      complain(failure.what());
      worst = std::max(worst, failure.status());
    }
  }
  return worst;
}

}  // namespace

void showAttributes(const AttributesOptions& options, std::ostream& out) {
  std::for_each(options.names.begin(), options.names.end(), &requireKeyword);
  requireOneToKeep(options);
  Progress none(false);
  Waiting waiting(none);
  const Exchanges exchanges = startAll(options);
  Answers answers(options, out);
  try {
    const ExitStatus worst = showAll(exchanges, options, answers, waiting);
    answers.finish();
    if (worst != ExitStatus::done) {
      throw Failure(worst, "");
    }
  } catch (const Interrupted& interrupted) {
    throw Failure(interrupted.status(), "canceled before all had answered");
  }
}

}  // namespace platen::tool
