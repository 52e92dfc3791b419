// SPDX-License-Identifier: Apache-2.0
#include "platen/IPPConstants.h"

namespace platen::inline v0 {

// The two are the application's: they exist so that code written against these names links. They
// stay variables, zero at start, and nothing in the library looks at them.
std::int32_t IPP_DELIMETER_TAG = 0;
std::int32_t IPP_RESOLUTUION_UNIT = 0;

}  // namespace platen::inline v0
