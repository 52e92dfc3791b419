// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platen/IPPCoder.h"
#include "platen/IPPMap.h"

namespace platen::inline v0 {

/// Writes the body of a collection to a sequential coder.
void encodeMap(const IPPMap& map, IPPCoder& coder);

/// Reads a collection from a coder of either face.
IPPValue::Pointer decodeMap(IPPCoder& coder);

}  // namespace platen::inline v0
