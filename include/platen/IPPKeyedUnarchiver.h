// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// Reading archives: objects that were kept.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platen/Data.h"
#include "platen/Error.h"
#include "platen/Export.h"
#include "platen/IPPCoder.h"
#include "platen/IPPKeyedArchive.h"
#include "platen/Stream.h"

namespace platen::inline v0 {

class ArchiveReader;
class IPPValue;

/// Makes objects from an archive that `IPPKeyedArchiver` wrote, in JSON or in CBOR.
///
///     std::shared_ptr<const Error> error;
///     auto request = IPPKeyedUnarchiver::unarchiveObjectWithFile<IPPRequest>("kept.json", &error);
///
/// An archive may come from anywhere: sizes, depths and counts are bounded, every fault is an error
/// record that names its place (see `IPPArchiveError`), also where a class throws something of its
/// own, and there is never half an object. Only a lack of memory (std::bad_alloc) comes out. An
/// object is compared with the archive after it was read: what it would write itself must be what
/// is there, so that nothing is dropped, cut or turned into something else in silence.
///
/// What is referred to several times is one object. So a small archive can hold a set of sets of
/// sets that would be huge if it were written out; the unarchiver never does, but whoever walks it
/// or encodes it does.
///
/// Threads: one thread at a time. Neither copied nor moved. What it made is independent of it.
class PLATEN_EXPORT IPPKeyedUnarchiver : public IPPCoder {
 public:
  // --- The root object --------------------------------------------------------------------------
  //
  // Each returns the root object of an archive, and null when there is none to be had or when it is
  // not of the class `Kind`; `error`, which may be null, is then set, and otherwise set to null.
  // Nobody else holds the object. Values are immutable: ask for them as `const IPPValue`.

  /// From octets in memory, which are not needed any more afterwards.
  template <class Kind = const IPPCodable>
  static std::shared_ptr<Kind> unarchiveObjectWithData(
      Bytes data, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {}) {
    return ofKind<Kind>(rootObjectOf(initForReadingWithData(data, error, reading), error), error);
  }
  /// From an open stream, which is read to its end, or to the limit, and stays open. A failure of
  /// the stream is one of this operation too; a nonblocking one that has nothing to give yet fails
  /// with EAGAIN, and one that is not open with EBADF.
  template <class Kind = const IPPCodable>
  static std::shared_ptr<Kind> unarchiveObjectWithStream(
      InputStream& stream, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {}) {
    return ofKind<Kind>(rootObjectOf(initForReadingWithStream(stream, error, reading), error),
                        error);
  }
  /// From the file at `path`. One that cannot be opened or read is a failure of
  /// `kPOSIXErrorDomain`.
  template <class Kind = const IPPCodable>
  static std::shared_ptr<Kind> unarchiveObjectWithFile(
      const std::string& path, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {}) {
    return ofKind<Kind>(rootObjectOf(initForReadingWithFile(path, error, reading), error), error);
  }

  // --- Several objects --------------------------------------------------------------------------
  //
  // Each parses an archive and checks its version; null and `error` as above. The fields at the top
  // of the archive are then to be had by their keys:
  //
  //     auto archive = IPPKeyedUnarchiver::initForReadingWithFile("kept.json");
  //     auto request = archive->decodeObjectForKey("request");

  /// From octets in memory, which are not needed any more afterwards.
  static std::shared_ptr<IPPKeyedUnarchiver> initForReadingWithData(
      Bytes data, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {});
  /// From an open stream, as above.
  static std::shared_ptr<IPPKeyedUnarchiver> initForReadingWithStream(
      InputStream& stream, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {});
  /// From the file at `path`, as above.
  static std::shared_ptr<IPPKeyedUnarchiver> initForReadingWithFile(
      const std::string& path, std::shared_ptr<const Error>* error = nullptr,
      const IPPArchiveReading& reading = {});
  ~IPPKeyedUnarchiver() override;

  // What follows raises `InconsistentArchiveException` with the description of the error record. A
  // missing key is one. After it the unarchiver is of no more use: it raises the same again.

  /// The root object, which was encoded as such: an archive of several objects has none, and then
  /// this raises. The same object however often it is asked for.
  Object decodeRootObject();
  /// Why this unarchiver raised; null when it did not.
  [[nodiscard]] std::shared_ptr<const Error> error() const;

  /// True: the sequential face is not there, and asking for it raises `InvalidArgumentException`.
  [[nodiscard]] bool allowsKeyedCoding() const noexcept override { return true; }
  /// False only when asking for the key would raise because it is missing.
  [[nodiscard]] bool containsValueForKey(std::string_view key) const;

  // While an object is being read these are its fields, otherwise those at the top; what each reads
  // is said in `IPPCoder`. A field of another type than is asked for raises too.

  std::int64_t decodeIntForKey(std::string_view key) override;
  bool decodeBoolForKey(std::string_view key) override;
  std::optional<std::string> decodeStringForKey(std::string_view key) override;
  RawValue decodeRawValueForKey(std::string_view key) override;
  /// One object each, however often it is asked for; null where the archive says so.
  Object decodeObjectForKey(std::string_view key) override;
  std::vector<Object> decodeObjectsForKey(std::string_view key) override;
  Dictionary<Object> decodeNamedObjectsForKey(std::string_view key) override;

 private:
  explicit IPPKeyedUnarchiver(std::unique_ptr<ArchiveReader> reader);
  static Object rootObjectOf(const std::shared_ptr<IPPKeyedUnarchiver>& unarchiver,
                             std::shared_ptr<const Error>* error);
  static void refuseKind(std::string_view className, std::shared_ptr<const Error>* error);

  template <class Kind>
  static std::shared_ptr<Kind> ofKind(const Object& object, std::shared_ptr<const Error>* error) {
    static_assert(std::is_const_v<Kind> || !std::is_base_of_v<IPPValue, Kind>,
                  "values are immutable");
    const auto wanted = std::dynamic_pointer_cast<const Kind>(object);
    if (object != nullptr && wanted == nullptr) {
      refuseKind(object->className(), error);
    }
    // Nobody else holds what was just made as const.
    return std::const_pointer_cast<Kind>(wanted);
  }

  std::unique_ptr<ArchiveReader> reader_;
};

}  // namespace platen::inline v0
