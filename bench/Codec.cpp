// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdio>
#include <memory>

#include "Bench.h"
#include "platen/IPPBytesReader.h"
#include "platen/IPPMessage.h"
#include "platen/IPPUnarchiver.h"

namespace platen::bench {

namespace {

// Every message is written as version 1.1, whatever version it came in.
constexpr std::size_t kVersionOctets = 2;

/// The octets up to the end of the message, without the document behind it.
Bytes messagePart(const Capture& capture) {
  const auto reader = std::make_shared<IPPDataReader>(std::make_shared<Data>(capture.octets));
  IPPUnarchiver decoder(reader);
  const bool isDecoded = IPPMessage::initWithCoder(decoder) != nullptr;
  const std::size_t length = capture.octets.size() - reader->window().size();
  return isDecoded ? Bytes(capture.octets).first(length) : Bytes();
}

bool areSameAfterVersion(Bytes left, Bytes right) {
  left = left.subspan(kVersionOctets);
  right = right.subspan(kVersionOctets);
  return std::equal(left.begin(), left.end(), right.begin(), right.end());
}

void printLine(const Capture& capture, Bytes octets) {
  const HeapUse before = heapUse();
  IPPMessage::initWithDataRepresentation(octets);
  const HeapUse after = heapUse();

  const double decoding = nanosecondsOf([&] { IPPMessage::initWithDataRepresentation(octets); });
  const auto message = IPPMessage::initWithDataRepresentation(octets);
  const double encoding = nanosecondsOf([&] { static_cast<void>(message->dataRepresentation()); });
  const bool isSame = areSameAfterVersion(message->dataRepresentation(), octets);
  std::printf("%s\t%zu\t%.0f\t%.0f\t%zu\t%zu\t%s\n", capture.name.c_str(), octets.size(), decoding,
              encoding, after.calls - before.calls, after.octets - before.octets,
              isSame ? "same" : "differs");
}

}  // namespace

void benchCodec(const std::vector<Capture>& captures) {
  std::printf("name\toctets\tdecode ns\tencode ns\theap calls\theap octets\tround trip\n");
  for (const Capture& capture : captures) {
    const Bytes octets = messagePart(capture);
    if (octets.empty()) {
      std::printf("%s\t%zu\tundecodable\n", capture.name.c_str(), capture.octets.size());
    } else {
      printLine(capture, octets);
    }
  }
}

}  // namespace platen::bench
