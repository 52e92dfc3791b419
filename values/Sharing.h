// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/Arena.h"

namespace platen::inline v0 {

/// A counted reference to `object`. An object that lives in an arena holds those beside it by
/// references that count nothing, since an arena must not hold itself; what is handed out must hold
/// the arena. `home` is null for an object that lives on its own.
template <class Object>
std::shared_ptr<Object> share(const std::shared_ptr<Object>& object, const Arena* home) {
  if (home == nullptr || object.use_count() != 0) {
    return object;
  }
  return {home->shared_from_this(), object.get()};
}

/// The reference by which an object in `home` holds `object`: one that counts nothing when `object`
/// lives there too.
template <class Object>
std::shared_ptr<Object> hold(const std::shared_ptr<Object>& object,
                             const std::shared_ptr<Arena>& home) {
  const bool isBeside = !object.owner_before(home) && !home.owner_before(object);
  return isBeside ? std::shared_ptr<Object>(std::shared_ptr<void>(), object.get()) : object;
}

}  // namespace platen::inline v0
