# SPDX-License-Identifier: Apache-2.0
# The event loops of others that platen/adapters/ is for, as far as this machine has them: their
# names in PLATEN_FOUND_HOST_LOOPS, and in PLATEN_HOST_LOOP_<name> what to link. The library needs
# none of them.

set(PLATEN_FOUND_HOST_LOOPS Poll Epoll)
macro(platen_host_loop name target)
  if(TARGET ${target})
    list(APPEND PLATEN_FOUND_HOST_LOOPS ${name})
    set(PLATEN_HOST_LOOP_${name} ${target})
  else()
    message(STATUS "Without ${name}: its adapter is neither tested nor shown by an example")
  endif()
endmacro()

pkg_check_modules(PLATEN_GLIB QUIET IMPORTED_TARGET glib-2.0)
platen_host_loop(GLib PkgConfig::PLATEN_GLIB)

pkg_check_modules(PLATEN_LIBUV QUIET IMPORTED_TARGET libuv)
platen_host_loop(LibUV PkgConfig::PLATEN_LIBUV)

find_path(PLATEN_ASIO_INCLUDE_DIR asio.hpp)
mark_as_advanced(PLATEN_ASIO_INCLUDE_DIR)
if(PLATEN_ASIO_INCLUDE_DIR AND NOT TARGET platen-asio)
  find_package(Threads REQUIRED)
  add_library(platen-asio INTERFACE IMPORTED)
  target_include_directories(platen-asio INTERFACE ${PLATEN_ASIO_INCLUDE_DIR})
  target_link_libraries(platen-asio INTERFACE Threads::Threads)
  if(PLATEN_SANITIZE MATCHES "thread")
    # Of fences, which the sanitizer does not know, compilers warn; one thread needs none.
    target_compile_definitions(platen-asio INTERFACE ASIO_DISABLE_FENCED_BLOCK)
  endif()
endif()
platen_host_loop(Asio platen-asio)

find_package(Qt6 QUIET COMPONENTS Core)
platen_host_loop(Qt Qt6::Core)
