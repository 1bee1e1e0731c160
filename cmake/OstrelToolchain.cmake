# Compiler settings that hold for every target of the project, and the libraries it uses.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  # Paths relative to the checkout, so that a second checkout finds what the first compiled.
  set(_ccache ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1
      ${CCACHE_PROGRAM})
  set(CMAKE_C_COMPILER_LAUNCHER ${_ccache})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${_ccache})
endif()

set(OSTREL_SANITIZER "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
if(OSTREL_SANITIZER)
  add_compile_options(-fsanitize=${OSTREL_SANITIZER} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${OSTREL_SANITIZER})
endif()

# Everything a user runs stands in four folders of the build tree.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/archive)
set(OSTREL_PLUGIN_DIRECTORY ${CMAKE_BINARY_DIR}/plugins)

set(OSTREL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# GCC 12 sees overlapping copies in the inlined operator+ of a literal and a string.
list(APPEND OSTREL_WARNINGS -Wno-restrict)

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)
find_package(Boost REQUIRED COMPONENTS chrono)
find_package(GLEW REQUIRED)
find_package(TBB REQUIRED)
find_package(spdlog REQUIRED)
find_package(PNG REQUIRED)
find_package(GTest REQUIRED)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)
find_package(X11 REQUIRED)
pkg_check_modules(xxhash REQUIRED IMPORTED_TARGET libxxhash)
# Imath's own CMake package asks for files of another Debian package.
pkg_check_modules(Imath REQUIRED IMPORTED_TARGET Imath>=3)
pkg_check_modules(assimp REQUIRED IMPORTED_TARGET assimp)
pkg_check_modules(libisal REQUIRED IMPORTED_TARGET libisal)
include(GoogleTest)
