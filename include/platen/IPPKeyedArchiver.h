// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Writing archives: objects that are to be kept.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/IPPCoder.h"
#include "platen/IPPKeyedArchive.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

class ArchiveWriter;

/// Writes objects with their class names and named fields into an archive, in JSON or in CBOR, from
/// which `IPPKeyedUnarchiver` makes equal ones. An object that is met again is written once and
/// referred to, so that what was shared is shared after reading. Absent, null and empty are told
/// apart; strings keep their octets even where these are not UTF-8.
///
///     auto archive = IPPKeyedArchiver::archivedDataWithRootObject(*request);
///
/// An archive holds one root object, or several objects under keys of the caller's choice:
///
///     IPPKeyedArchiver archiver;
///     archiver.encodeObjectForKey(request, "request");
///     archiver.encodeObjectForKey(response, "response");
///     Data archive = archiver.archivedData();
///
/// What the objects' classes write is all that is kept: of a request neither the time-out nor the
/// delegate nor an exchange, of a resolution no fractions.
///
/// Refused with `InvalidArgumentException` (and by the class operations with an error record of
/// `IPPArchiveErrorDomain`): objects of a class that is not registered, deeper nested than
/// `kIPPArchiveDeepestObject`, or inside of themselves, and keys that are there already, are not
/// UTF-8 or begin with "$". After that the archiver is of no more use. Whatever else a class throws
/// comes out of the archiver, and is an error record (`inconsistent`) of the class operations; a
/// lack of memory (std::bad_alloc) comes out of both.
///
/// Threads: one thread at a time. Neither copied nor moved.
class PLATEN_EXPORT IPPKeyedArchiver : public IPPCoder {
 public:
  /// The archive of `root` and of everything that it refers to. Nothing on a failure; `*error` is
  /// then set to a record of `IPPArchiveErrorDomain`, and otherwise to null. `error` may be null.
  static std::optional<Data> archivedDataWithRootObject(
      const IPPCodable& root, IPPArchiveFormat format = IPPArchiveFormat::json,
      std::shared_ptr<const Error>* error = nullptr);
  /// The same into an open stream, which stays open: true when all of it was taken, in as many
  /// writes as that takes. False on a failure, also of the stream, which may have taken a part
  /// then; a nonblocking one without space is a failure (EAGAIN), one that is not open too (EBADF).
  /// What an application's own stream raises comes out of here.
  static bool archiveRootObject(const IPPCodable& root, OutputStream& stream,
                                IPPArchiveFormat format = IPPArchiveFormat::json,
                                std::shared_ptr<const Error>* error = nullptr);
  /// The same into the file at `path`, in the place of an earlier one: whoever reads it sees the
  /// old file or the new one, never a part. Its mode is 0600. False on a failure; then nothing has
  /// changed. What is no regular file is not replaced: a directory (EISDIR), a device, a pipe or a
  /// socket (EINVAL).
  static bool archiveRootObject(const IPPCodable& root, const std::string& path,
                                IPPArchiveFormat format = IPPArchiveFormat::json,
                                std::shared_ptr<const Error>* error = nullptr);

  /// An archiver that has encoded nothing yet.
  IPPKeyedArchiver();
  ~IPPKeyedArchiver() override;

  /// Makes `root` the root object. It need not outlive the call, and nor need anything else that is
  /// encoded. Once, and before anything else is encoded. Raises as said above.
  void encodeRootObject(const IPPCodable& root);
  /// The archive of all that was encoded so far, which may go on afterwards.
  [[nodiscard]] Data archivedData(IPPArchiveFormat format = IPPArchiveFormat::json) const;
  /// Why this archiver raised; null when it did not.
  [[nodiscard]] std::shared_ptr<const Error> error() const;

  /// True: the sequential face is not there, and asking for it raises `InvalidArgumentException`.
  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }

  // While an object is being written these are its fields, otherwise those at the top; what each
  // writes is said in `IPPCoder`. All raise as said above. What is given is only read during the
  // call.

  void encodeIntForKey(std::int64_t value, std::string_view key) override;
  void encodeBoolForKey(bool value, std::string_view key) override;
  void encodeStringForKey(std::optional<std::string_view> value, std::string_view key) override;
  void encodeRawValueForKey(const RawValue& value, std::string_view key) override;
  void encodeObjectForKey(const Object& object, std::string_view key) override;
  void encodeObjectsForKey(const std::vector<Object>& objects, std::string_view key) override;
  void encodeNamedObjectsForKey(const Dictionary<Object>& objects, std::string_view key) override;

 private:
  std::unique_ptr<ArchiveWriter> writer_;
};

}  // namespace platen::inline v0
