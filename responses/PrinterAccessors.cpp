// SPDX-License-Identifier: Apache-2.0

/// What a response says of a printer or of one queue.

#include "model/PrinterType.h"
#include "model/TypedValues.h"
#include "platen/IPPConstants.h"
#include "platen/IPPResponse.h"

namespace platen::inline v0 {

std::optional<URL> IPPResponse::printerURI() const {
  return urlIn(attributeValueForKey(kIPPPrinterUriAttributeName));
}

std::optional<std::int32_t> IPPResponse::printerState() const {
  return integerIn(attributeValueForKey(kIPPPrinterStateAttributeName));
}

std::optional<std::string> IPPResponse::printerStateMessage() const {
  return stringIn(attributeValueForKey(kIPPPrinterStateMessageAttributeName));
}

std::optional<std::vector<std::string>> IPPResponse::printerStateReasons() const {
  return stringsIn(attributeValueForKey(kIPPPrinterStateReasonsAttributeName));
}

bool IPPResponse::isAcceptingJobs() const {
  return booleanIn(attributeValueForKey(kIPPPrinterIsAcceptingJobsAttributeName)).value_or(false);
}

std::optional<RawValue::Dictionary> IPPResponse::printerAttributes() const {
  const Groups groups = printerGroups();
  return groups.empty() ? std::nullopt : groups.front()->namedValues();
}

std::uint32_t IPPResponse::_printerType() const {
  return printerTypeIn(attributeValueForKey(kIPPPrinterTypeAttributeName));
}

bool IPPResponse::isPrintQueueRemote() const { return (_printerType() & kPrinterTypeRemote) != 0; }

bool IPPResponse::isPrintQueueLocal() const { return !isPrintQueueRemote(); }

bool IPPResponse::isPrintQueueColor() const { return (_printerType() & kPrinterTypeColor) != 0; }

bool IPPResponse::isPrintQueueGrayscale() const {
  return (_printerType() & kPrinterTypeGrayscale) != 0;
}

bool IPPResponse::canPrintQueueDuplex() const { return (_printerType() & kPrinterTypeDuplex) != 0; }

bool IPPResponse::canPrintQueueStaple() const { return (_printerType() & kPrinterTypeStaple) != 0; }

bool IPPResponse::canPrintQueueCollate() const {
  return (_printerType() & kPrinterTypeCollate) != 0;
}

// By design these are not told of one queue and stay false whatever its bits: the queue lists,
// which see all queues side by side, are the place to ask.

bool IPPResponse::isPrintQueueRequiringAuthentication() const { return false; }

bool IPPResponse::isPrintQueueNotShared() const { return false; }

bool IPPResponse::isPrintQueueDefault() const { return false; }

bool IPPResponse::canPrintQueuePunch() const { return false; }

bool IPPResponse::canPrintQueueCover() const { return false; }

bool IPPResponse::canPrintQueueBind() const { return false; }

bool IPPResponse::canPrintQueueSort() const { return false; }

}  // namespace platen::inline v0
