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
  using Entry = std::pair<std::string, Value>;

  Dictionary() = default;
  Dictionary(std::initializer_list<Entry> entries) {
    for (const Entry& entry : entries) {
      set(entry.first, entry.second);
    }
  }

  /// Stores `value` under `name`, in the place of an earlier one.
  void set(std::string_view name, Value value) {
    const std::size_t index = indexOf(name);
    if (index < entries_.size()) {
      entries_[index].second = std::move(value);
      return;
    }
    entries_.emplace_back(std::string(name), std::move(value));
    noteAdded();
  }

  /// The value under `name`, or null; valid until the dictionary changes.
  [[nodiscard]] const Value* find(std::string_view name) const {
    const std::size_t index = indexOf(name);
    return index < entries_.size() ? &entries_[index].second : nullptr;
  }

  [[nodiscard]] bool empty() const noexcept { return entries_.empty(); }
  [[nodiscard]] std::size_t size() const noexcept { return entries_.size(); }
  [[nodiscard]] auto begin() const noexcept { return entries_.begin(); }
  [[nodiscard]] auto end() const noexcept { return entries_.end(); }

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
