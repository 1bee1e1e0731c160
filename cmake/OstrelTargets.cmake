# The kinds of target that the wings are made of. Sources register by being there: a wing's
# src/*.cpp are its library, its tests/*_test.cpp its test program.

# ostrel_shared_library(NAME [DEPENDS public...] [PRIVATE_DEPENDS private...])
# A shared library from src/*.cpp, with include/ as its public headers.
function(ostrel_shared_library NAME)
  cmake_parse_arguments(ARG "" "" "DEPENDS;PRIVATE_DEPENDS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.cpp)
  add_library(${NAME} SHARED ${sources})
  target_include_directories(${NAME}
    PUBLIC $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
           $<INSTALL_INTERFACE:include>
    PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src)
  target_link_libraries(${NAME} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_PRIVATE_DEPENDS})
  target_compile_options(${NAME} PRIVATE ${OSTREL_WARNINGS})
  target_link_options(${NAME} PRIVATE -Wl,--no-undefined)
  set_target_properties(${NAME} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${NAME} EXPORT ViewerAPI LIBRARY DESTINATION lib)
  if(EXISTS ${CMAKE_CURRENT_SOURCE_DIR}/include)
    install(DIRECTORY include/ DESTINATION include)
  endif()
endfunction()

# ostrel_tests(NAME [DEPENDS libraries...] [SUPPORT sources...] [DIRECTORY dir])
# One GoogleTest program from tests/*_test.cpp, or those of another folder; each of its tests is a
# CTest test. Tests may include the wing's private headers.
function(ostrel_tests NAME)
  cmake_parse_arguments(ARG "" "DIRECTORY" "DEPENDS;SUPPORT" ${ARGN})
  if(NOT ARG_DIRECTORY)
    set(ARG_DIRECTORY tests)
  endif()
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${ARG_DIRECTORY}/*_test.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${NAME} ${sources} ${ARG_SUPPORT})
  target_include_directories(${NAME} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/src
                                             ${CMAKE_CURRENT_SOURCE_DIR}/tests)
  target_link_libraries(${NAME} PRIVATE ${ARG_DEPENDS} GTest::gmock GTest::gtest_main)
  target_compile_options(${NAME} PRIVATE ${OSTREL_WARNINGS} -Wno-sign-conversion)
  set(properties TIMEOUT 600)
  if(OSTREL_SANITIZER MATCHES thread)
    list(APPEND properties
         ENVIRONMENT TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/tsan.suppressions)
  endif()
  gtest_discover_tests(${NAME} TEST_PREFIX "${NAME}." DISCOVERY_MODE PRE_TEST
                       NO_PRETTY_VALUES PROPERTIES ${properties})
endfunction()

# ostrel_plugin_library(NAME SOURCES sources... [DEPENDS libraries...] [DIRECTORY dir])
# A plug-in library: exports its three entry points and nothing else.
function(ostrel_plugin_library NAME)
  cmake_parse_arguments(ARG "" "DIRECTORY" "SOURCES;DEPENDS" ${ARGN})
  if(NOT ARG_DIRECTORY)
    set(ARG_DIRECTORY ${OSTREL_PLUGIN_DIRECTORY})
  endif()
  add_library(${NAME} MODULE ${ARG_SOURCES})
  target_link_libraries(${NAME} PRIVATE ViewerAPI_headers VlAttribute ${ARG_DEPENDS})
  target_compile_options(${NAME} PRIVATE ${OSTREL_WARNINGS}
                         $<$<COMPILE_LANGUAGE:C>:-fexceptions>)
  target_link_options(${NAME} PRIVATE -Wl,-z,defs
    -Wl,--version-script=${CMAKE_SOURCE_DIR}/cmake/plugin.version)
  set_target_properties(${NAME} PROPERTIES
    PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${ARG_DIRECTORY}
    LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/plugin.version
    C_VISIBILITY_PRESET hidden CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
    INSTALL_RPATH "$ORIGIN/..")
endfunction()
