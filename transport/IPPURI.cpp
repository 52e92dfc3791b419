// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPURI.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "platen/IPPConstants.h"
#include "platform/IntegerText.h"

namespace platen::inline v0 {

namespace {

constexpr std::array kAcceptedSchemes{kIPPURLScheme, kHTTPURLScheme};

/// RFC 8011 §5.1.6 lets a uri have 1023 octets; a URL is ASCII, so that these are its characters.
constexpr std::size_t kTooManyCharacters = 1024;

// What a print server calls its own pages and collections.
constexpr std::string_view kAdminResource = "admin";
constexpr std::string_view kAdminConfResource = "admin/conf";
constexpr std::string_view kAdminLogResource = "admin/log";
constexpr std::string_view kClassesResource = "classes";
constexpr std::string_view kJobsResource = "jobs";
constexpr std::string_view kPrintersResource = "printers";

/// Whole segments only, in the letter case as written. The path comes unescaped, so that it does
/// not matter which of its characters the sender chose to escape.
bool pathHasSegment(std::string_view path, std::string_view segment) {
  while (true) {
    const std::size_t slash = path.find('/');
    if (path.substr(0, slash) == segment) return true;
    if (slash == std::string_view::npos) return false;
    path.remove_prefix(slash + 1);
  }
}

/// `printers/NAME` and then `suffix`; nothing when the name is missing.
std::optional<std::string> printersResource(IPPURI::OptionalText name, std::string_view suffix) {
  if (!name) return std::nullopt;
  std::string resource{kPrintersResource};
  return resource.append("/").append(*name).append(suffix);
}

}  // namespace

std::optional<URL> IPPURI::namedServerResourceURI(OptionalText server, OptionalText resource) {
  if (!server || !resource) return std::nullopt;
  std::string text{kIPPURLScheme};
  text.append("://").append(*server).append("/").append(*resource);
  auto url = URL::parse(text);
  // The text can still be too long, which only the whole of it shows.
  if (url && !isIPPURL(*url)) return std::nullopt;
  return url;
}

// Every operation for the local server is its twin for a named one, so that they cannot differ.

std::optional<URL> IPPURI::localServerURI() { return namedServerURI(kIPPLocalhostName); }

std::optional<URL> IPPURI::namedServerURI(OptionalText server) {
  return namedServerResourceURI(server, "");
}

std::optional<URL> IPPURI::localServerAdminURI() { return namedServerAdminURI(kIPPLocalhostName); }

std::optional<URL> IPPURI::namedServerAdminURI(OptionalText server) {
  return namedServerResourceURI(server, kAdminResource);
}

std::optional<URL> IPPURI::localServerAdminConfURI() {
  return namedServerAdminConfURI(kIPPLocalhostName);
}

std::optional<URL> IPPURI::namedServerAdminConfURI(OptionalText server) {
  return namedServerResourceURI(server, kAdminConfResource);
}

std::optional<URL> IPPURI::localServerAdminLogURI() {
  return namedServerAdminLogURI(kIPPLocalhostName);
}

std::optional<URL> IPPURI::namedServerAdminLogURI(OptionalText server) {
  return namedServerResourceURI(server, kAdminLogResource);
}

std::optional<URL> IPPURI::localServerClassesURI() {
  return namedServerClassesURI(kIPPLocalhostName);
}

std::optional<URL> IPPURI::namedServerClassesURI(OptionalText server) {
  return namedServerResourceURI(server, kClassesResource);
}

std::optional<URL> IPPURI::localServerNamedClassURI(OptionalText name) {
  return namedServerNamedClassURI(kIPPLocalhostName, name);
}

std::optional<URL> IPPURI::namedServerNamedClassURI(OptionalText server, OptionalText name) {
  // The bare name on purpose: "classes" is the collection's own address and no part of a class's.
  return namedServerResourceURI(server, name);
}

std::optional<URL> IPPURI::localServerJobsURI() { return namedServerJobsURI(kIPPLocalhostName); }

std::optional<URL> IPPURI::namedServerJobsURI(OptionalText server) {
  return namedServerResourceURI(server, kJobsResource);
}

std::optional<URL> IPPURI::localServerJobURI(JobId jobId) {
  return namedServerJobURI(kIPPLocalhostName, jobId);
}

std::optional<URL> IPPURI::namedServerJobURI(OptionalText server, JobId jobId) {
  if (!jobId) return std::nullopt;
  // The bare number on purpose; `jobId` knows it for a job by its not being 0.
  return namedServerResourceURI(server, std::to_string(*jobId));
}

std::optional<URL> IPPURI::localServerPrintersURI() {
  return namedServerPrintersURI(kIPPLocalhostName);
}

std::optional<URL> IPPURI::namedServerPrintersURI(OptionalText server) {
  return namedServerResourceURI(server, kPrintersResource);
}

std::optional<URL> IPPURI::localServerNamedPrinterURI(OptionalText name) {
  return namedCUPSServerNamedPrinterURI(kIPPLocalhostName, name);
}

std::optional<URL> IPPURI::namedIPPServerNamedPrinterURI(OptionalText server, OptionalText name) {
  return namedServerResourceURI(server, name);
}

std::optional<URL> IPPURI::namedCUPSServerNamedPrinterURI(OptionalText server, OptionalText name) {
  return namedServerResourceURI(server, printersResource(name, ""));
}

std::optional<URL> IPPURI::localServerNamedPrinterPPDURI(OptionalText name) {
  return namedServerNamedPrinterPPDURI(kIPPLocalhostName, name);
}

std::optional<URL> IPPURI::namedServerNamedPrinterPPDURI(OptionalText server, OptionalText name) {
  return namedServerResourceURI(server, printersResource(name, ".ppd"));
}

bool IPPURI::isIPPURL(const URL& url) {
  const auto scheme = url.scheme();
  if (!scheme || std::ranges::find(kAcceptedSchemes, *scheme) == kAcceptedSchemes.end()) {
    return false;
  }
  return url.absoluteString().size() < kTooManyCharacters;
}

std::optional<URL> IPPURI::hostURL(const URL& url) {
  const auto scheme = url.scheme();
  const auto host = url.host();
  const auto port = url.port();
  if (!scheme || !host || host->empty() || !port) return std::nullopt;
  // An IP literal is handed out without its brackets, but no URI can do without them.
  const bool isBracketed = url.hostIsBracketed();
  std::string text{*scheme};
  text.append(isBracketed ? "://[" : "://").append(*host).append(isBracketed ? "]:" : ":");
  text.append(std::to_string(*port)).append("/");
  return URL::parse(text);
}

std::optional<std::int32_t> IPPURI::jobId(const URL& url) {
  if (!_isValidJobURI(url)) return std::nullopt;
  return leadingIntValue(url.lastPathComponent());
}

std::optional<std::string> IPPURI::printQueueName(const URL& url) {
  if (!_isValidPrinterURI(url)) return std::nullopt;
  return url.lastPathComponent();
}

bool IPPURI::_isValidJobURI(const URL& url) {
  if (!isIPPURL(url)) return false;
  return pathHasSegment(url.path(), kJobsResource) || leadingIntValue(url.lastPathComponent()) != 0;
}

bool IPPURI::_isValidPrinterURI(const URL& url) {
  return isIPPURL(url) && pathHasSegment(url.path(), kPrintersResource);
}

}  // namespace platen::inline v0
