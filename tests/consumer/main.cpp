// SPDX-License-Identifier: Apache-2.0

// Counts the catalogs. The classes in them register themselves, which a linker undoes when it drops
// what nobody calls by name; so the sizes are the proof that the whole library was linked.

#include <platen/IPPAttributeGroup.h>
#include <platen/IPPValue.h>

#include <cstddef>
#include <iostream>

int main() {
  constexpr std::size_t kValueClasses = 23;
  constexpr std::size_t kGroupClasses = 6;
  const std::size_t values = platen::IPPValue::ippValuesCatalog().size();
  const std::size_t groups = platen::IPPAttributeGroup::ippGroupsCatalog().size();
  std::cout << values << " value classes, " << groups << " group classes\n";
  return values == kValueClasses && groups == kGroupClasses ? 0 : 1;
}
