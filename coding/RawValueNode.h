// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "coding/ArchiveNode.h"
#include "platen/RawValue.h"

namespace platen::inline v0 {

/// A raw object in an archive:
///
///     raw        = null                              ; absent
///                / { "$null": true }
///                / string / true / false / integer / real / { "$real": text }
///                / { "$url": text }
///                / { "$range": [ location, length ] } / { "$size": [ width, height ] }
///                / { "$date": milliseconds }         ; since 1970-01-01 00:00:00 UTC
///                / [ *raw ]
///                / { "$dictionary": [ *{ "name": string, "value": raw } ] }
///
/// The bounds of a range are unsigned words, which are written as signed ones. A real that is not
/// finite is written as the text "NaN", "Infinity" or "-Infinity". Throws `ArchiveFault` without a
/// key path when arrays and dictionaries are nested more than 64 deep.
ArchiveNode nodeOf(const RawValue& value);

/// Throws `ArchiveFault` whose key path is counted from `root` for everything that is no raw
/// object, and for what `nodeOf` would find too deep.
RawValue rawValueOf(const ArchiveNode& node, const ArchiveNode& root);

}  // namespace platen::inline v0
