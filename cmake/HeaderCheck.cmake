# SPDX-License-Identifier: Apache-2.0
# Each public header compiles alone, and twice in a row, with nothing but include/ in sight; of the
# adapters those that need no other's event loop.

file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/include
     ${PROJECT_SOURCE_DIR}/include/platen/*.h)
foreach(adapter Epoll Poll Wait)
  list(APPEND headers platen/adapters/${adapter}.h)
endforeach()
set(checks "")
foreach(header IN LISTS headers)
  set(check ${PROJECT_BINARY_DIR}/header-check/${header}.cpp)
  file(CONFIGURE OUTPUT ${check} CONTENT "#include <${header}>\n#include <${header}>\n")
  list(APPEND checks ${check})
endforeach()
add_library(platen-header-check OBJECT ${checks})
target_link_libraries(platen-header-check PRIVATE platen-headers)
