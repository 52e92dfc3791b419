// SPDX-License-Identifier: Apache-2.0

/// How a coder without memory of its own makes sets and collections: each on its own.

#include "platen/IPPArray.h"
#include "platen/IPPMap.h"
#include "values/MemberList.h"

namespace platen::inline v0 {

std::shared_ptr<const IPPValue> IPPCoder::makeArray(
    std::span<const std::shared_ptr<const IPPValue>> values) {
  return IPPArray::_ippValue({values.begin(), values.end()});
}

std::shared_ptr<const IPPValue> IPPCoder::makeMap(std::span<Member> members) {
  IPPValueDictionary dictionary;
  for (Member& member : members.first(uniteMembers(members))) {
    dictionary.set(member.first.viewOrEmpty(), std::move(member.second));
  }
  return IPPValue::dictionaryWithDictionary(dictionary);
}

}  // namespace platen::inline v0
