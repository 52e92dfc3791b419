# SPDX-License-Identifier: Apache-2.0
# The library. Its objects are a target of their own, so that the unit tests and the fuzz targets
# reach the classes that the shared library hides, without compiling anything twice.

set(rooms platform coding values model transport requests responses)
list(TRANSFORM rooms PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE patterns)
list(TRANSFORM patterns APPEND /*.cpp)
file(GLOB sources CONFIGURE_DEPENDS ${patterns})

find_package(PkgConfig REQUIRED)
find_package(nlohmann_json REQUIRED)
include(Dependencies)

# What everybody sees who includes a public header.
add_library(platen-headers INTERFACE)
add_library(platen::headers ALIAS platen-headers)
set_target_properties(platen-headers PROPERTIES EXPORT_NAME headers)
target_compile_features(platen-headers INTERFACE cxx_std_20)
target_include_directories(
  platen-headers INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
                           $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
if(NOT PLATEN_SHARED)
  target_compile_definitions(platen-headers INTERFACE PLATEN_STATIC)
endif()

add_library(platen-objects OBJECT ${sources})
target_link_libraries(
  platen-objects
  PUBLIC platen-headers
  PRIVATE ${PLATEN_DEPENDENCIES} nlohmann_json::nlohmann_json)
target_include_directories(platen-objects PUBLIC ${PROJECT_SOURCE_DIR})
# Nobody replaces the library's own functions from outside, so calls between them need not go by a
# table that others could change: decoding takes a quarter less time (docs/benchmarks.md).
target_compile_options(platen-objects PRIVATE -fno-semantic-interposition)
set_target_properties(
  platen-objects
  PROPERTIES CXX_VISIBILITY_PRESET hidden
             VISIBILITY_INLINES_HIDDEN ON
             POSITION_INDEPENDENT_CODE ON)

if(PLATEN_SHARED)
  add_library(platen SHARED $<TARGET_OBJECTS:platen-objects>)
  target_link_libraries(platen PUBLIC platen-headers PRIVATE ${PLATEN_DEPENDENCIES})
  # Visibility cannot hide the templates of the standard library that are instantiated here.
  set(exports ${PROJECT_SOURCE_DIR}/cmake/platen.map)
  target_link_options(platen PRIVATE -Wl,--version-script=${exports} -Wl,-Bsymbolic-functions)
  set_target_properties(
    platen
    PROPERTIES LINKER_LANGUAGE CXX
               LINK_DEPENDS ${exports}
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR})
else()
  # The classes of values and groups register themselves and nothing refers to them by name: a
  # linker that takes from the archive only what is asked for would leave the catalogs empty.
  add_library(platen-archive STATIC $<TARGET_OBJECTS:platen-objects>)
  set_target_properties(platen-archive PROPERTIES LINKER_LANGUAGE CXX OUTPUT_NAME platen
                                                  EXPORT_NAME archive)
  target_link_libraries(platen-archive PUBLIC platen-headers PRIVATE ${PLATEN_DEPENDENCIES})
  add_library(platen INTERFACE)
  # By its exported name, which is right in the build tree and when installed: exporting does not
  # look into this expression.
  add_library(platen::archive ALIAS platen-archive)
  target_link_libraries(platen INTERFACE platen-headers
                                         $<LINK_LIBRARY:WHOLE_ARCHIVE,platen::archive>)
endif()
add_library(platen::platen ALIAS platen)
