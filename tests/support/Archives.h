// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platen/Data.h"
#include "platen/IPPCoder.h"
#include "platen/IPPKeyedArchive.h"
#include "platen/IPPKeyedArchiver.h"
#include "platen/IPPKeyedUnarchiver.h"

namespace platen::test {

inline constexpr IPPArchiveFormat kArchiveFormats[] = {
    IPPArchiveFormat::json, IPPArchiveFormat::indentedJSON, IPPArchiveFormat::cbor};

/// The archive of `object`; throws when there is none.
Data archived(const IPPCodable& object, IPPArchiveFormat format = IPPArchiveFormat::json);
/// The same as text.
std::string archivedText(const IPPCodable& object);

/// What an archive holds; null when that is nothing of the class `Kind`.
template <class Kind = const IPPCodable>
std::shared_ptr<Kind> unarchived(const Data& archive) {
  return IPPKeyedUnarchiver::unarchiveObjectWithData<Kind>(archive);
}
template <class Kind = const IPPCodable>
std::shared_ptr<Kind> unarchived(std::string_view text) {
  return unarchived<Kind>(Data(text.begin(), text.end()));
}

/// What reading an archive is refused with, as "CODE KEY-PATH: TEXT" with the number of the code;
/// "" when it is read.
std::string refusal(const Data& archive, const IPPArchiveReading& reading = {});
std::string refusal(std::string_view text, const IPPArchiveReading& reading = {});

/// `fields` at the top of an archive of this version.
std::string archiveOf(std::string_view fields);

}  // namespace platen::test
