// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <platen/IPPRequest.h>
#include <platen/IPPResponse.h>

#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What the programs here ask a printer, URI [FILE]: what it is, or to print the file. How it is
/// waited for is what they show.
class Question final : public platen::IPPRequestDelegate {
 public:
  /// Sends the request; `whenAnswered` is called from within a later turn of the run loop, or at
  /// once when there is nothing to send. To be kept until then: a request does not hold its
  /// delegate.
  static std::shared_ptr<Question> ask(int argc, char** argv, std::function<void()> whenAnswered) {
    auto question = std::make_shared<Question>();
    question->whenAnswered_ = std::move(whenAnswered);
    const auto printer = argc > 1 ? platen::URL::parse(argv[1]) : std::nullopt;
    if (!printer) {
      std::cerr << "usage: " << argv[0] << " URI [FILE]\n";
      question->end();
      return question;
    }
    if (argc > 2) {
      question->document_ = platen::InputStream::withFileAtPath(argv[2]);
      question->keys_ = {"job-id"};
    }
    const auto request = question->document_
                             ? platen::IPPRequest::jobPrintRequest(*printer)
                             : platen::IPPRequest::printerAttributesRequest(*printer);
    request->setDelegate(question);
    request->sendTo(*printer);
    return question;
  }

  [[nodiscard]] bool isAnswered() const { return isAnswered_; }
  [[nodiscard]] int exitStatus() const { return exitStatus_; }

  // --- What the exchange says -------------------------------------------------------------------

  std::shared_ptr<platen::InputStream> dataStreamForRequest(platen::IPPRequest&) override {
    return document_;
  }
  void requestDidReceiveResponse(platen::IPPRequest&,
                                 const std::shared_ptr<platen::IPPResponse>& response,
                                 const std::shared_ptr<const platen::Error>& error) override {
    exitStatus_ = error ? 1 : 0;
    if (error) {
      std::cerr << error->description() << '\n';
    } else {
      for (const auto& key : keys_) {
        std::cout << key << ": " << response->attributeValueForKey(key).description() << '\n';
      }
    }
    end();
  }

 private:
  void end() {
    isAnswered_ = true;
    whenAnswered_();
  }

  std::function<void()> whenAnswered_;
  std::shared_ptr<platen::InputStream> document_;
  std::vector<std::string> keys_ = {"printer-name", "printer-state"};
  bool isAnswered_ = false;
  int exitStatus_ = 2;
};
