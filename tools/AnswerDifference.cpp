// SPDX-License-Identifier: Apache-2.0
#include "AnswerDifference.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

#include "ValueText.h"
#include "platen/IPPArray.h"
#include "platen/IPPConstants.h"

namespace platen::tool {

namespace {

using Named = std::vector<std::pair<std::string_view, const IPPValue*>>;

bool isSame(const IPPValue* before, const IPPValue* after);

bool isSameSet(const IPPArray& before, const IPPArray& after) {
  bool isSoFar = before.size() == after.size();
  for (std::size_t index = 0; isSoFar && index < before.size(); ++index) {
    isSoFar = isSame(&before.at(index), &after.at(index));
  }
  return isSoFar;
}

// Sets and collections value by value: sets of other syntaxes are equal to the library when their
// plain objects are.
bool isSame(const IPPValue* before, const IPPValue* after) {
  if (before == nullptr || after == nullptr) {
    return before == after;
  }
  const auto* oldSet = dynamic_cast<const IPPArray*>(before);
  const auto* newSet = dynamic_cast<const IPPArray*>(after);
  if (oldSet != nullptr && newSet != nullptr) {
    return isSameSet(*oldSet, *newSet);
  }
  const auto* oldMap = dynamic_cast<const IPPMap*>(before);
  const auto* newMap = dynamic_cast<const IPPMap*>(after);
  if (oldMap != nullptr && newMap != nullptr) {
    return differencesBetween(*oldMap, *newMap).empty();
  }
  return before->isEqual(*after);
}

bool isBefore(const Named::value_type& left, const Named::value_type& right) {
  return left.first < right.first;
}

// The stable order makes the first of one name meet the first, and so on.
ValueDifferences compared(Named before, Named after) {
  std::stable_sort(before.begin(), before.end(), &isBefore);
  std::stable_sort(after.begin(), after.end(), &isBefore);
  ValueDifferences differences;
  auto old = before.cbegin();
  auto now = after.cbegin();
  while (old != before.cend() || now != after.cend()) {
    if (now == after.cend() || (old != before.cend() && isBefore(*old, *now))) {
      differences.push_back({Change::removed, old->first, old->second, nullptr});
      ++old;
    } else if (old == before.cend() || isBefore(*now, *old)) {
      differences.push_back({Change::added, now->first, nullptr, now->second});
      ++now;
    } else {
      if (!isSame(old->second, now->second)) {
        differences.push_back({Change::changed, old->first, old->second, now->second});
      }
      ++old;
      ++now;
    }
  }
  return differences;
}

Named membersOf(const IPPMap& collection) {
  Named members;
  for (std::size_t index = 0; index < collection.size(); ++index) {
    members.emplace_back(collection.nameAt(index), &collection.valueAt(index));
  }
  return members;
}

Named attributesOf(const IPPAttributeGroup* group, const std::vector<std::string>& ignored) {
  Named attributes;
  if (group == nullptr) {
    return attributes;
  }
  std::set<const IPPAttribute*> unwanted;
  for (const std::string& pattern : ignored) {
    for (const auto& attribute : group->attributesForName(pattern)) {
      unwanted.insert(attribute.get());
    }
  }
  for (const auto& attribute : group->attributes()) {
    if (!unwanted.contains(attribute.get())) {
      attributes.emplace_back(attribute->name().value_or(""), attribute->ippValue().get());
    }
  }
  return attributes;
}

// "job-id 12", by the first of these attributes that the group has.
std::string identityOf(const IPPAttributeGroup& group) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kIdentifiers{
      {{kIPPPrinterGroupName, "printer-name"},
       {kIPPJobGroupName, "job-id"},
       {kIPPJobGroupName, "job-uuid"},
       {kIPPSubscriptionGroupName, "notify-subscription-id"}}};
  for (const auto& [kind, name] : kIdentifiers) {
    const auto attribute = group.name() == kind ? group.attributeForName(name) : nullptr;
    if (attribute != nullptr && attribute->ippValue() != nullptr) {
      return std::string(name) + " " + valueText(*attribute->ippValue(), name);
    }
  }
  return "";
}

// Both groups of a pair; one of them may be missing.
struct Pair {
  std::string_view kind;
  std::string identity;
  const IPPAttributeGroup* before = nullptr;
  const IPPAttributeGroup* after = nullptr;
};

class Pairing {
 public:
  Pairing(const IPPMessage& before, const IPPMessage& after)
      : hasOnePrinter_(before.printerGroups().size() == 1 && after.printerGroups().size() == 1) {
    add(before, &Pair::before);
    add(after, &Pair::after);
  }

  [[nodiscard]] const std::vector<Pair>& pairs() const noexcept { return pairs_; }

 private:
  using Key = std::tuple<std::string_view, std::string, int>;

  void add(const IPPMessage& message, const IPPAttributeGroup* Pair::*side) {
    std::map<std::pair<std::string_view, std::string>, int> counts;
    for (const auto& group : message.ippGroups()) {
      const bool isOnly = hasOnePrinter_ && group->name() == kIPPPrinterGroupName;
      const std::string identity = isOnly ? "" : identityOf(*group);
      const int count = ++counts[{group->name(), identity}];
      const auto [found, isNew] =
          indexes_.try_emplace(Key{group->name(), identity, count}, pairs_.size());
      if (isNew) {
        const bool needsNumber = identity.empty() && count > 1;
        pairs_.push_back({group->name(), needsNumber ? std::to_string(count) : identity});
      }
      pairs_[found->second].*side = group.get();
    }
  }

  bool hasOnePrinter_;
  std::map<Key, std::size_t> indexes_;
  std::vector<Pair> pairs_;
};

Change changeOf(const Pair& pair) {
  if (pair.before == nullptr) {
    return Change::added;
  }
  return pair.after == nullptr ? Change::removed : Change::changed;
}

bool isEmpty(const Pair& pair) {
  const auto* const group = pair.before != nullptr ? pair.before : pair.after;
  return group == nullptr || group->attributes().empty();
}

}  // namespace

ValueDifferences differencesBetween(const IPPMap& before, const IPPMap& after) {
  return compared(membersOf(before), membersOf(after));
}

// A group that is in one message alone differs unless all that it has is ignored.
std::vector<GroupDifference> differencesBetween(const IPPMessage& before, const IPPMessage& after,
                                                const std::vector<std::string>& ignored) {
  std::vector<GroupDifference> differences;
  const Pairing pairing(before, after);
  for (const Pair& pair : pairing.pairs()) {
    auto values = compared(attributesOf(pair.before, ignored), attributesOf(pair.after, ignored));
    const Change change = changeOf(pair);
    if (!values.empty() || (change != Change::changed && isEmpty(pair))) {
      differences.push_back({change, pair.kind, pair.identity, std::move(values)});
    }
  }
  return differences;
}

}  // namespace platen::tool
