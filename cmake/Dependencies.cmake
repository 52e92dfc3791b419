# SPDX-License-Identifier: Apache-2.0
# The libraries behind Platen. The installed package reads this too when Platen is static: then
# whoever links Platen links them as well.

set(PLATEN_PKG_CONFIG_NAMES libcurl libuv icu-uc liburiparser)
set(PLATEN_DEPENDENCIES "")
foreach(name IN LISTS PLATEN_PKG_CONFIG_NAMES)
  pkg_check_modules(${name} REQUIRED QUIET IMPORTED_TARGET ${name})
  list(APPEND PLATEN_DEPENDENCIES PkgConfig::${name})
endforeach()
