// SPDX-License-Identifier: Apache-2.0

/// The catalog of value classes. Each class puts itself into a list that is initialised by
/// constant, so that no order of start-up matters; the look-up tables are built from it on first
/// use.

#include <array>
#include <string>

#include "platen/IPPValue.h"

namespace platen::inline v0 {

namespace {

constinit const IPPValueRegistration* firstRegistration = nullptr;
constinit const IPPValueRegistration** lastLink = nullptr;

using TagTable = std::array<const IPPValueClass*, 256>;

IPPValue::Catalog buildCatalog() {
  IPPValue::Catalog catalog;
  for (const auto* entry = firstRegistration; entry != nullptr; entry = entry->next()) {
    catalog.emplace(entry->valueClass().syntaxName(), &entry->valueClass());
  }
  return catalog;
}

// In the order of registration, so that of two classes with the same tag the first one stays.
[[gnu::noinline]] TagTable buildTagTable() {
  TagTable table;
  table.fill(&IPPValue::descriptor);
  for (const auto* entry = firstRegistration; entry != nullptr; entry = entry->next()) {
    const IPPValueClass& candidate = entry->valueClass();
    const bool isInCatalog = IPPValue::classForSyntaxName(candidate.syntaxName()) == &candidate;
    if (isInCatalog && table[candidate.ippTag()] == &IPPValue::descriptor) {
      table[candidate.ippTag()] = &candidate;
    }
  }
  return table;
}

}  // namespace

IPPValueRegistration::IPPValueRegistration(const IPPValueClass& valueClass) noexcept
    : class_(valueClass) {
  (lastLink == nullptr ? firstRegistration : *lastLink) = this;
  lastLink = &next_;
}

const IPPValue::Catalog& IPPValue::ippValuesCatalog() {
  static const auto* const catalog = new Catalog(buildCatalog());  // lives for the process
  return *catalog;
}

const IPPValueClass* IPPValue::classForSyntaxName(std::string_view syntaxName) {
  const auto found = ippValuesCatalog().find(syntaxName);
  return found == ippValuesCatalog().end() ? nullptr : found->second;
}

const IPPValueClass& IPPValue::classForIPPTag(std::uint8_t tag) noexcept {
  static const TagTable table = buildTagTable();
  return *table[tag];
}

}  // namespace platen::inline v0
