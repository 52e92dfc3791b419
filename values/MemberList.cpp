// SPDX-License-Identifier: Apache-2.0
#include "values/MemberList.h"

#include <string_view>
#include <unordered_map>
#include <utility>

namespace platen::inline v0 {

namespace {

constexpr std::size_t kWalkedMembers = 16;

// Finds the place of a name among those kept so far: by a walk while they are few, by a hash table
// after that.
class Places {
 public:
  explicit Places(std::span<IPPCoder::Member> members) : members_(members) {}

  std::size_t find(std::string_view name, std::size_t kept) {
    return members_.size() > kWalkedMembers ? findHashed(name, kept) : walk(name, kept);
  }

 private:
  [[nodiscard]] std::size_t walk(std::string_view name, std::size_t kept) const {
    std::size_t place = 0;
    while (place < kept && members_[place].first.viewOrEmpty() != name) {
      ++place;
    }
    return place;
  }

  std::size_t findHashed(std::string_view name, std::size_t kept) {
    return places_.try_emplace(name, kept).first->second;
  }

  std::span<IPPCoder::Member> members_;
  std::unordered_map<std::string_view, std::size_t> places_;
};

}  // namespace

std::size_t uniteMembers(std::span<IPPCoder::Member> members) {
  Places places(members);
  std::size_t kept = 0;
  for (IPPCoder::Member& member : members) {
    const std::size_t place = places.find(member.first.viewOrEmpty(), kept);
    if (place < kept) {
      members[place].second = std::move(member.second);
    } else if (&members[kept++] != &member) {
      members[place] = std::move(member);
    }
  }
  return kept;
}

}  // namespace platen::inline v0
