// SPDX-License-Identifier: Apache-2.0

#include "platen/Exception.h"

namespace platen::inline v0 {

// Destructors live here, so that each class has its type information in the library and nowhere
// else: an exception thrown by the library is then caught in an application by its type.

Exception::~Exception() = default;
RangeException::~RangeException() = default;
InvalidArgumentException::~InvalidArgumentException() = default;
InconsistentArchiveException::~InconsistentArchiveException() = default;

}  // namespace platen::inline v0
