// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPScheduledRequest.h"

namespace platen::inline v0 {

IPPScheduledRequest::~IPPScheduledRequest() = default;

IPPRequestDelegate::~IPPRequestDelegate() = default;

void IPPRequestDelegate::requestWillSend(IPPRequest& /*request*/) {}

std::shared_ptr<InputStream> IPPRequestDelegate::dataStreamForRequest(IPPRequest& /*request*/) {
  return nullptr;
}

void IPPRequestDelegate::requestDidReceiveResponse(IPPRequest& /*request*/,
                                                   const std::shared_ptr<IPPResponse>& /*response*/,
                                                   const std::shared_ptr<const Error>& /*error*/) {}

std::shared_ptr<OutputStream> IPPRequestDelegate::dataStreamForResponse(
    const std::shared_ptr<IPPResponse>& /*response*/, IPPRequest& /*request*/) {
  return nullptr;
}

void IPPRequestDelegate::responseDidReceiveDataStream(
    const std::shared_ptr<IPPResponse>& /*response*/,
    const std::shared_ptr<OutputStream>& /*stream*/, IPPRequest& /*request*/) {}

IPPConnectionDelegate::~IPPConnectionDelegate() = default;

void IPPConnectionDelegate::requestWillSend(IPPConnectionHandler& /*handler*/) {}

void IPPConnectionDelegate::requestDidReceiveResponse(
    IPPConnectionHandler& /*handler*/, const std::shared_ptr<IPPResponse>& /*response*/,
    const std::shared_ptr<const Error>& /*error*/) {}

std::shared_ptr<OutputStream> IPPConnectionDelegate::dataStreamForResponse(
    const std::shared_ptr<IPPResponse>& /*response*/, IPPConnectionHandler& /*handler*/) {
  return nullptr;
}

void IPPConnectionDelegate::responseDidReceiveDataStream(
    const std::shared_ptr<IPPResponse>& /*response*/,
    const std::shared_ptr<OutputStream>& /*stream*/, IPPConnectionHandler& /*handler*/) {}

KeyValue IPPConnectionDelegate::valueForKey(std::string_view /*key*/) const { return {}; }

}  // namespace platen::inline v0
