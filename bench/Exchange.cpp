// SPDX-License-Identifier: Apache-2.0

// Whole exchanges with a peer in a process of its own, beside the same octets sent by libcurl
// alone.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "BareCurl.h"
#include "Bench.h"
#include "Peer.h"
#include "Process.h"
#include "platen/IPPConnection.h"
#include "platen/IPPRequest.h"
#include "platen/IPPResponse.h"
#include "platen/RunLoop.h"

namespace platen::bench {

namespace {

constexpr double kMebi = 1024.0 * 1024.0;
constexpr std::size_t kRepetitions = 5;
constexpr std::uint64_t kUploadOctets = std::uint64_t{2} << 30U;
constexpr std::size_t kAtOnce = 1000;
constexpr int kSequential = 5000;
constexpr int kSequentialWithPrinter = 500;

class Asker final : public IPPRequestDelegate {
 public:
  explicit Asker(std::size_t expected) : left_(expected) {}

  std::shared_ptr<InputStream> dataStreamForRequest(IPPRequest& /*request*/) override {
    return document;
  }
  void requestDidReceiveResponse(IPPRequest& request, const std::shared_ptr<IPPResponse>& response,
                                 const std::shared_ptr<const Error>& error) override {
    if (response == nullptr) {
      throw std::runtime_error(error->description());
    }
    request.cancel();
    if (--left_ == 0) {
      RunLoop::current()->stop();
    }
  }

  std::shared_ptr<InputStream> document;

 private:
  std::size_t left_;
};

std::shared_ptr<IPPRequest> requestTo(const URL& target) {
  auto request = IPPRequest::printerAttributesRequest(target);
  request->setTimeInterval(0);
  return request;
}

void sendAndWait(IPPRequest& request, const URL& target, const std::shared_ptr<Asker>& asker) {
  request.setDelegate(asker);
  request.sendTo(target);
  RunLoop::current()->run();
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

/// Times two ways of doing the same in turns, so that what else the machine does hits both.
struct Comparison {
  double bare;
  double ours;
};
Comparison compare(const std::function<void()>& bare, const std::function<void()>& ours) {
  std::vector<double> bareTimes;
  std::vector<double> ourTimes;
  for (std::size_t i = 0; i < kRepetitions; ++i) {
    bareTimes.push_back(secondsOf(bare));
    ourTimes.push_back(secondsOf(ours));
  }
  return {median(bareTimes), median(ourTimes)};
}

void benchUpload(const Data& answer, std::uint64_t octets) {
  const Peer peer(answer);
  const URL target = *URL::parse(peer.url());
  std::size_t growth = 0;
  const auto ours = [&] {
    const Source source(octets);
    const auto asker = std::make_shared<Asker>(1);
    asker->document = InputStream::withFileDescriptor(source.descriptor());
    forgetPeak();
    const std::size_t before = residentMemory();
    sendAndWait(*requestTo(target), target, asker);
    growth = std::max(growth, peakMemory() - before);
  };
  const Data message = requestTo(target)->dataRepresentation();
  const auto bare = [&] {
    const Source source(octets);
    BareCurl(peer.url()).upload(message, source.descriptor());
  };
  const auto [bareSeconds, ourSeconds] = compare(bare, ours);
  const double size = static_cast<double>(octets) / kMebi;
  std::printf("upload MiB\tMiB/s\tlibcurl MiB/s\tratio\tmemory growth KiB\n");
  std::printf("%.0f\t%.0f\t%.0f\t%.2f\t%zu\n", size, size / ourSeconds, size / bareSeconds,
              bareSeconds / ourSeconds, growth / 1024);
}

void benchAtOnce(const Data& answer) {
  const Peer peer(answer, kAtOnce);
  const URL target = *URL::parse(peer.url());
  const Peer warmUpPeer(answer);
  const URL warmUp = *URL::parse(warmUpPeer.url());
  sendAndWait(*requestTo(warmUp), warmUp, std::make_shared<Asker>(1));
  const std::size_t descriptors = openDescriptors();
  forgetPeak();
  const std::size_t memory = residentMemory();
  const auto asker = std::make_shared<Asker>(kAtOnce);
  std::vector<std::shared_ptr<IPPRequest>> requests;
  const double seconds = secondsOf([&] {
    for (std::size_t i = 0; i < kAtOnce; ++i) {
      requests.push_back(requestTo(target));
      requests.back()->setDelegate(asker);
      requests.back()->sendTo(target);
    }
    RunLoop::current()->run();
  });
  const std::size_t growth = peakMemory() - memory;
  requests.clear();
  std::printf("at once\tseconds\tKiB each\tdescriptors more than before\n");
  std::printf("%zu\t%.3f\t%.1f\t%td\n", kAtOnce, seconds,
              static_cast<double>(growth) / 1024 / kAtOnce,
              static_cast<std::ptrdiff_t>(openDescriptors() - descriptors));
}

void printRate(const char* name, int count, const Comparison& times) {
  std::printf("%s\t%.0f\t%.0f\t%.2f\n", name, count / times.ours, count / times.bare,
              times.bare / times.ours);
}

void benchSequential(const URL& target, int count) {
  const Data message = requestTo(target)->dataRepresentation();
  BareCurl curl(IPPConnectionHandler::HTTPURLForIPPTargetURL(target)->absoluteString());
  const auto bare = [&] {
    for (int i = 0; i < count; ++i) {
      curl.post(message);
    }
  };
  const auto blocking = [&] {
    for (int i = 0; i < count; ++i) {
      if (requestTo(target)->performOn(target) == nullptr) {
        throw std::runtime_error("no answer");
      }
    }
  };
  const auto scheduled = [&] {
    for (int i = 0; i < count; ++i) {
      sendAndWait(*requestTo(target), target, std::make_shared<Asker>(1));
    }
  };
  std::printf("sequential\texchanges/s\tlibcurl exchanges/s\tratio\n");
  printRate("blocking", count, compare(bare, blocking));
  printRate("scheduled", count, compare(bare, scheduled));
}

}  // namespace

bool benchExchange(std::string_view which, const Capture& answer) {
  const bool isAll = which == "exchange";
  bool isKnown = isAll;
  const auto runs = [&](std::string_view name) {
    isKnown = isKnown || which == name;
    return isAll || which == name;
  };
  allowManyDescriptors();
  if (runs("upload")) {
    benchUpload(answer.octets, kUploadOctets);
  }
  if (runs("at-once")) {
    benchAtOnce(answer.octets);
  }
  if (runs("sequential")) {
    const Peer peer(answer.octets);
    benchSequential(*URL::parse(peer.url()), kSequential);
  }
  return isKnown;
}

void benchPrinter(const std::string& uri) {
  const auto printer = URL::parse(uri);
  if (!printer) {
    throw std::runtime_error("not a URI: " + uri);
  }
  benchSequential(*printer, kSequentialWithPrinter);
}

}  // namespace platen::bench
