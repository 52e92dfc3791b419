// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// The URIs of a print server and of what it serves (RFC 8011 §4.1.5, RFC 3510).

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platen/Export.h"
#include "platen/URL.h"

namespace platen::inline v0 {

/// Makes target URIs, and reads job numbers and queue names out of them. Only static members.
///
/// Every URI made here is `ipp://SERVER/RESOURCE`. SERVER is the host as the caller writes it, with
/// a colon and a port where there is one; RESOURCE follows the slash as given. Nothing is escaped,
/// so a name that holds blanks or other octets that no URI may hold must come escaped
/// (`URL::escapePath`).
///
/// What makes a URI returns nothing when an argument is missing, when the text is no URI, and when
/// it is 1024 characters or longer. What reads a URI returns nothing when it is of another kind.
///
/// Threads: stateless; may be used from every thread.
class PLATEN_EXPORT IPPURI {
 public:
  /// A text that may be missing; nothing is made from a missing one.
  using OptionalText = std::optional<std::string_view>;
  /// A job's number, which may be missing too.
  using JobId = std::optional<std::int64_t>;

  IPPURI() = delete;

  /// The TCP port of a print server whose URI names none: 631 (RFC 8010 §4).
  static constexpr std::uint16_t defaultIPPPort() noexcept { return 631; }

  /// `ipp://SERVER/RESOURCE`, from which all that follow are made. `resource` brings no slash of
  /// its own in front.
  static std::optional<URL> namedServerResourceURI(OptionalText server, OptionalText resource);

  // The server as a whole, and the pages of its administration. The local server is "localhost".

  /// `ipp://localhost/`
  static std::optional<URL> localServerURI();
  /// `ipp://SERVER/`
  static std::optional<URL> namedServerURI(OptionalText server);
  /// `ipp://localhost/admin`
  static std::optional<URL> localServerAdminURI();
  /// `ipp://SERVER/admin`
  static std::optional<URL> namedServerAdminURI(OptionalText server);
  /// `ipp://localhost/admin/conf`
  static std::optional<URL> localServerAdminConfURI();
  /// `ipp://SERVER/admin/conf`
  static std::optional<URL> namedServerAdminConfURI(OptionalText server);
  /// `ipp://localhost/admin/log`
  static std::optional<URL> localServerAdminLogURI();
  /// `ipp://SERVER/admin/log`
  static std::optional<URL> namedServerAdminLogURI(OptionalText server);

  // Its collections, and what is in them. A class, a job and a queue of a plain IPP server are
  // addressed by their bare name or number at the server's root; only the queues of a CUPS server
  // have the segment "printers" before the name.

  /// `ipp://localhost/classes`
  static std::optional<URL> localServerClassesURI();
  /// `ipp://SERVER/classes`
  static std::optional<URL> namedServerClassesURI(OptionalText server);
  /// `ipp://localhost/NAME`
  static std::optional<URL> localServerNamedClassURI(OptionalText name);
  /// `ipp://SERVER/NAME`
  static std::optional<URL> namedServerNamedClassURI(OptionalText server, OptionalText name);
  /// `ipp://localhost/jobs`
  static std::optional<URL> localServerJobsURI();
  /// `ipp://SERVER/jobs`
  static std::optional<URL> namedServerJobsURI(OptionalText server);
  /// `ipp://localhost/ID`, the number in decimal.
  static std::optional<URL> localServerJobURI(JobId jobId);
  /// `ipp://SERVER/ID`, the number in decimal.
  static std::optional<URL> namedServerJobURI(OptionalText server, JobId jobId);
  /// `ipp://localhost/printers`
  static std::optional<URL> localServerPrintersURI();
  /// `ipp://SERVER/printers`
  static std::optional<URL> namedServerPrintersURI(OptionalText server);
  /// `ipp://localhost/printers/NAME`
  static std::optional<URL> localServerNamedPrinterURI(OptionalText name);
  /// `ipp://SERVER/NAME`
  static std::optional<URL> namedIPPServerNamedPrinterURI(OptionalText server, OptionalText name);
  /// `ipp://SERVER/printers/NAME`
  static std::optional<URL> namedCUPSServerNamedPrinterURI(OptionalText server, OptionalText name);
  /// `ipp://localhost/printers/NAME.ppd`: the printer's description file.
  static std::optional<URL> localServerNamedPrinterPPDURI(OptionalText name);
  /// `ipp://SERVER/printers/NAME.ppd`: the printer's description file.
  static std::optional<URL> namedServerNamedPrinterPPDURI(OptionalText server, OptionalText name);

  // What a URI says.

  /// True when the scheme is exactly "ipp" or "http" (in lower case; "ipps" and "https" are not
  /// among them) and the whole text is shorter than 1024 characters. Of the host it says nothing.
  static bool isIPPURL(const URL& url);

  /// `SCHEME://HOST:PORT/` of any URL, whatever its scheme; nothing when it names no host or no
  /// port.
  static std::optional<URL> hostURL(const URL& url);

  /// The integer that the last component of the path begins with, as a 32-bit number held at its
  /// limits, and 0 when it begins with none. Nothing unless `url` is an IPP URL with a segment
  /// "jobs" in its path or with an integer other than 0 there; so the collection of all jobs has
  /// the number 0.
  static std::optional<std::int32_t> jobId(const URL& url);

  /// The last component of the path, unescaped; ".ppd" stays on it. Nothing unless `url` is an IPP
  /// URL with a segment "printers" in its path, which a queue of a plain IPP server lacks.
  static std::optional<std::string> printQueueName(const URL& url);

 private:
  static bool _isValidJobURI(const URL& url);
  static bool _isValidPrinterURI(const URL& url);
};

}  // namespace platen::inline v0
