# SPDX-License-Identifier: Apache-2.0
# What only a build of Platen by itself needs: warnings, sanitizers, the compiler cache.

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # When it optimises, it warns of "literal" + std::string (PR105651).
  add_compile_options($<$<NOT:$<CONFIG:Debug>>:-Wno-restrict>)
endif()
if(PLATEN_WERROR)
  add_compile_options(-Werror)
endif()

if(PLATEN_SANITIZE)
  add_compile_options(-fsanitize=${PLATEN_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${PLATEN_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # What the sanitizers add makes it warn of std::variant's members that are not there.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()
if(PLATEN_FUZZING)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "PLATEN_FUZZING needs clang")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(PLATEN_CCACHE ccache)
if(PLATEN_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  # It keeps what is compiled with a precompiled header only when told that this is all right.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
                                  CCACHE_SLOPPINESS=pch_defines,time_macros ${PLATEN_CCACHE})
endif()
