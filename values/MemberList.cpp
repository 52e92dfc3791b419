// SPDX-License-Identifier: Apache-2.0
#include "values/MemberList.h"

#include <map>
#include <string_view>
#include <utility>

namespace platen::inline v0 {

namespace {

constexpr std::size_t kWalkedMembers = 16;

// Each finds the place of a name among the `kept` members at the front, or answers `kept`.
class Walk {
 public:
  explicit Walk(std::span<const IPPCoder::Member> members) : members_(members) {}

  std::size_t operator()(std::string_view name, std::size_t kept) const {
    std::size_t place = 0;
    while (place < kept && members_[place].first.viewOrEmpty() != name) {
      ++place;
    }
    return place;
  }

 private:
  std::span<const IPPCoder::Member> members_;
};

// Ordered: names that a hash table takes for the same are easily made.
class Index {
 public:
  std::size_t operator()(std::string_view name, std::size_t kept) {
    return places_.try_emplace(name, kept).first->second;
  }

 private:
  std::map<std::string_view, std::size_t> places_;
};

template <class Find>
std::size_t unite(std::span<IPPCoder::Member> members, Find find) {
  std::size_t kept = 0;
  for (IPPCoder::Member& member : members) {
    const std::size_t place = find(member.first.viewOrEmpty(), kept);
    if (place < kept) {
      members[place].second = std::move(member.second);
    } else if (&members[kept++] != &member) {
      members[place] = std::move(member);
    }
  }
  return kept;
}

}  // namespace

std::size_t uniteMembers(std::span<IPPCoder::Member> members) {
  return members.size() <= kWalkedMembers ? unite(members, Walk(members)) : unite(members, Index());
}

}  // namespace platen::inline v0
