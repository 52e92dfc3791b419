// SPDX-License-Identifier: Apache-2.0
#include "BareCurl.h"

#include <curl/curl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>

namespace platen::bench {

namespace {

struct Upload {
  Bytes head;
  int descriptor;
};

std::size_t readUpload(char* destination, std::size_t, std::size_t room, void* argument) {
  auto& upload = *static_cast<Upload*>(argument);
  const std::size_t count = std::min(room, upload.head.size());
  if (count != 0) {
    std::copy_n(upload.head.begin(), count, destination);
    upload.head = upload.head.subspan(count);
    return count;
  }
  const auto octets = read(upload.descriptor, destination, room);
  return octets < 0 ? CURL_READFUNC_ABORT : static_cast<std::size_t>(octets);
}

std::size_t ignore(char*, std::size_t, std::size_t count, void*) { return count; }

}  // namespace

BareCurl::BareCurl(std::string_view url) : easy_(curl_easy_init()) {
  if (easy_ == nullptr) {
    throw std::bad_alloc();
  }
  auto* const headers = curl_slist_append(nullptr, "Content-Type: application/ipp");
  headers_ = curl_slist_append(headers, "Expect:");
  curl_easy_setopt(easy_, CURLOPT_URL, std::string(url).c_str());
  curl_easy_setopt(easy_, CURLOPT_NOPROXY, "*");
  curl_easy_setopt(easy_, CURLOPT_POST, 1L);
  curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, ignore);
}

BareCurl::~BareCurl() {
  curl_easy_cleanup(easy_);
  curl_slist_free_all(static_cast<curl_slist*>(headers_));
}

void BareCurl::perform() {
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, static_cast<curl_slist*>(headers_));
  if (const CURLcode code = curl_easy_perform(easy_); code != CURLE_OK) {
    throw std::runtime_error(curl_easy_strerror(code));
  }
}

void BareCurl::upload(const Data& head, int descriptor) {
  Upload upload{head, descriptor};
  headers_ = curl_slist_append(static_cast<curl_slist*>(headers_), "Transfer-Encoding: chunked");
  curl_easy_setopt(easy_, CURLOPT_READFUNCTION, readUpload);
  curl_easy_setopt(easy_, CURLOPT_READDATA, &upload);
  perform();
}

void BareCurl::post(const Data& body) {
  curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
  curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, body.data());
  perform();
}

}  // namespace platen::bench
