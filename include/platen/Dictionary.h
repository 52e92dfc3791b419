// SPDX-License-Identifier: Apache-2.0
#pragma once

/// @file
/// A dictionary that keeps its entries in arrival order.

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platen::inline v0 {

/// Maps names to values and keeps the entries in the order in which their names first arrived, so
/// that what was read in one order is written in the same. A name that is set again keeps its
/// place and takes the new value. Two dictionaries are equal when they hold equal values under
/// the same names, in whatever order.
///
/// Threads: one thread at a time; a const one may be shared between threads.
template <class Value>
class Dictionary {
 public:
  /// A name and the value under it.
  using Entry = std::pair<std::string, Value>;

  /// No entries.
  Dictionary() = default;
  /// The entries one after the other, each as by `set`: of several with one name the last value
  /// stays, in the place of the first.
  Dictionary(std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) {
      set(entry.first, entry.second);
    }
  }

  /// Stores `value` under `name`, both copied or moved in: in the place of an earlier value of
  /// exactly that name, otherwise at the end. Every pointer and iterator into the dictionary
  /// becomes invalid.
  void set(std::string_view name, Value value) {
    const std::size_t index = indexOf(name);
    if (index < entries_.size()) {
      entries_[index].second = std::move(value);
      return;
    }
    entries_.emplace_back(std::string(name), std::move(value));
    noteAdded();
  }

  /// The value under exactly that name, octet for octet, or null; valid until the dictionary
  /// changes. A walk up to 16 entries, a search in an ordered index above.
  [[nodiscard]] const Value* find(std::string_view name) const {
    const std::size_t index = indexOf(name);
    return index < entries_.size() ? &entries_[index].second : nullptr;
  }

  /// True when there is no entry.
  [[nodiscard]] bool empty() const noexcept { return entries_.empty(); }
  /// The number of entries, one for each name.
  [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
  /// The entries, read-only, in the order in which their names first arrived; valid until the
  /// dictionary changes.
  [[nodiscard]] auto begin() const noexcept { return entries_.begin(); }
  /// Behind the last of them.
  [[nodiscard]] auto end() const noexcept { return entries_.end(); }

  /// Equal values under the same names, in whatever order.
  friend bool operator==(const Dictionary& left, const Dictionary& right) {
    if (left.size() != right.size()) {
      return false;
    }
    for (const Entry& entry : left.entries_) {
      const Value* other = right.find(entry.first);
      if (other == nullptr || !(*other == entry.second)) {
        return false;
      }
    }
    return true;
  }

 private:
  // Below this many entries a walk beats an index; above it the index keeps a hostile collection of
  // a million members from costing a million walks. It is ordered: names that a hash table takes
  // for the same are easily made.
  static constexpr std::size_t kWalkedEntries = 16;

  [[nodiscard]] std::size_t indexOf(std::string_view name) const {
    if (entries_.size() > kWalkedEntries) {
      const auto found = index_.find(name);
      return found == index_.end() ? entries_.size() : found->second;
    }
    std::size_t index = 0;
    while (index < entries_.size() && entries_[index].first != name) {
      ++index;
    }
    return index;
  }

  void noteAdded() {
    if (entries_.size() > kWalkedEntries) {
      for (std::size_t i = index_.size(); i < entries_.size(); ++i) {
        index_.emplace(entries_[i].first, i);
      }
    }
  }

  std::vector<Entry> entries_;
  std::map<std::string, std::size_t, std::less<>> index_;
};

}  // namespace platen::inline v0
