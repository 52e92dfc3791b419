// SPDX-License-Identifier: Apache-2.0

/// The catalog of group classes, filled by the classes themselves as that of the value classes is.

#include "platen/IPPAttributeGroup.h"

namespace platen::inline v0 {

namespace {

constinit const IPPGroupRegistration* firstRegistration = nullptr;
constinit const IPPGroupRegistration** lastLink = nullptr;

IPPAttributeGroup::Catalog buildCatalog() {
  IPPAttributeGroup::Catalog catalog;
  for (const auto* entry = firstRegistration; entry != nullptr; entry = entry->next()) {
    catalog.emplace(entry->groupClass().ippName(), &entry->groupClass());
  }
  return catalog;
}

}  // namespace

IPPGroupRegistration::IPPGroupRegistration(const IPPGroupClass& groupClass) noexcept
    : class_(groupClass) {
  (lastLink == nullptr ? firstRegistration : *lastLink) = this;
  lastLink = &next_;
}

bool IPPGroupClass::isKindOf(const IPPGroupClass& other) const noexcept {
  const IPPGroupClass* ancestor = this;
  while (ancestor != nullptr && ancestor != &other) {
    ancestor = ancestor->base_;
  }
  return ancestor != nullptr;
}

const IPPAttributeGroup::Catalog& IPPAttributeGroup::ippGroupsCatalog() {
  static const auto* const catalog = new Catalog(buildCatalog());  // lives for the process
  return *catalog;
}

const IPPGroupClass& IPPAttributeGroup::classForIPPTag(std::int32_t tag) noexcept {
  for (const auto& [name, groupClass] : ippGroupsCatalog()) {
    if (groupClass->ippTag() == tag) {
      return *groupClass;
    }
  }
  return descriptor;
}

}  // namespace platen::inline v0
