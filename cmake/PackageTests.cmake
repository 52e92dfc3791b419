# SPDX-License-Identifier: Apache-2.0
# What only the finished library can show: a program finds and links it once it is installed, shared
# and static, and it exports what it exported before.

set(kinds Shared)
if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug") # it compiles the library once more: not in daily work
  list(APPEND kinds Static)
endif()
foreach(kind IN LISTS kinds)
  set(name Consumer.LinksTheInstalled${kind}Library)
  string(TOLOWER ${kind} kind)
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tests/consumer/run ${kind}
                                ${PROJECT_BINARY_DIR} ${CMAKE_BUILD_TYPE} ${CMAKE_CXX_COMPILER})
  # Alone: it may compile the library, which would disturb what other tests time.
  set_tests_properties(${name} PROPERTIES LABELS package RUN_SERIAL ON TIMEOUT 900)
endforeach()

if(PLATEN_SHARED)
  set(name Symbols.AreThoseOfTheBaseline)
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/scripts/symbols $<TARGET_FILE:platen>)
  set_tests_properties(${name} PROPERTIES LABELS package)
endif()
