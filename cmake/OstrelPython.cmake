# Extension modules and Python tests, once per interpreter.
#
# OSTREL_PYTHON27 and OSTREL_PYTHON3 name the interpreters. Python 2.7 is the first of
# python2.7 on PATH and the distribution's that runs and has its headers; Python 3 is always the
# distribution's own, for which the window toolkit is packaged.

function(_ostrel_python_include EXECUTABLE RESULT)
  set(${RESULT} "" PARENT_SCOPE)
  execute_process(
    COMMAND ${EXECUTABLE} -c "import sysconfig; print(sysconfig.get_config_var('INCLUDEPY'))"
    OUTPUT_VARIABLE include OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
  if(NOT failed AND EXISTS "${include}/Python.h")
    set(${RESULT} "${include}" PARENT_SCOPE)
  endif()
endfunction()

if(NOT OSTREL_PYTHON27)
  find_program(_python27_on_path python2.7)
  foreach(candidate ${_python27_on_path} /usr/bin/python2.7)
    _ostrel_python_include(${candidate} include)
    if(include)
      set(OSTREL_PYTHON27 ${candidate} CACHE FILEPATH "The Python 2.7 interpreter")
      break()
    endif()
  endforeach()
endif()
set(OSTREL_PYTHON3 /usr/bin/python3 CACHE FILEPATH "The Python 3 interpreter")

_ostrel_python_include("${OSTREL_PYTHON27}" OSTREL_PYTHON27_INCLUDE)
_ostrel_python_include("${OSTREL_PYTHON3}" OSTREL_PYTHON3_INCLUDE)
foreach(version 27 3)
  if(NOT OSTREL_PYTHON${version}_INCLUDE)
    message(FATAL_ERROR "No Python ${version} with headers. Run scripts/bootstrap.sh.")
  endif()
endforeach()

# The names that the build tree's folders and the tests bear.
set(OSTREL_PYTHON27_NAME python2.7)
set(OSTREL_PYTHON3_NAME python3)

# ostrel_python_module(NAME SOURCES sources... [DEPENDS libraries...] [FOR_TESTS])
# Makes the targets NAME_py27 and NAME_py3; both files are named NAME.so. A module FOR_TESTS stands
# beside the test plug-ins, in a folder named like the interpreter, and is not installed.
function(ostrel_python_module NAME)
  cmake_parse_arguments(ARG "FOR_TESTS" "" "SOURCES;DEPENDS" ${ARGN})
  foreach(version 27 3)
    set(target ${NAME}_py${version})
    add_library(${target} MODULE ${ARG_SOURCES})
    target_include_directories(${target} SYSTEM PRIVATE ${OSTREL_PYTHON${version}_INCLUDE})
    # Every module writes for both interpreters against pythoncompat.h.
    target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/viewer_api/src/python)
    target_link_libraries(${target} PRIVATE ${ARG_DEPENDS})
    # Method tables leave fields empty and cast functions, as the interpreter's own do; Python
    # 2.7's headers still say "register".
    target_compile_options(${target} PRIVATE ${OSTREL_WARNINGS}
      -Wno-missing-field-initializers -Wno-cast-function-type -Wno-register)
    set_target_properties(${target} PROPERTIES
      PREFIX "" OUTPUT_NAME ${NAME}
      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${OSTREL_PYTHON${version}_NAME}
      CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON
      INSTALL_RPATH "$ORIGIN/..")
    if(ARG_FOR_TESTS)
      set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY
        ${CMAKE_BINARY_DIR}/test_plugins/${OSTREL_PYTHON${version}_NAME})
    else()
      install(TARGETS ${target} LIBRARY DESTINATION lib/${OSTREL_PYTHON${version}_NAME})
    endif()
  endforeach()
endfunction()

# ostrel_python_package(DIRECTORY): makes a package importable from both build folders.
function(ostrel_python_package DIRECTORY)
  get_filename_component(name ${DIRECTORY} NAME)
  get_filename_component(source ${DIRECTORY} ABSOLUTE)
  foreach(version 27 3)
    set(folder ${CMAKE_BINARY_DIR}/${OSTREL_PYTHON${version}_NAME})
    file(MAKE_DIRECTORY ${folder})
    file(CREATE_LINK ${source} ${folder}/${name} SYMBOLIC)
    install(DIRECTORY ${source} DESTINATION lib/${OSTREL_PYTHON${version}_NAME}
            FILES_MATCHING PATTERN "*.py")
  endforeach()
endfunction()

# ostrel_python_tests(PREFIX [DIRECTORY]): every *_test.py of the directory, "tests" unless told,
# with both interpreters, as the CTest tests PREFIX.python2.7.NAME and PREFIX.python3.NAME. A test
# finds the plug-ins by OSTREL_PLUGINS.
function(ostrel_python_tests PREFIX)
  set(directory tests)
  if(ARGC GREATER 1)
    set(directory ${ARGV1})
  endif()
  file(GLOB tests CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${directory}/*_test.py)
  # An uninstrumented interpreter can host the address sanitizer if it is loaded first; its leak
  # check would count what the interpreter itself never frees. The thread sanitizer can't be
  # hosted so.
  set(environment PYTHONDONTWRITEBYTECODE=1 OSTREL_PLUGINS=${OSTREL_PLUGIN_DIRECTORY}
      OSTREL_TEST_PLUGINS=${CMAKE_BINARY_DIR}/test_plugins OSTREL_BIN=${CMAKE_BINARY_DIR}/bin)
  if(OSTREL_SANITIZER MATCHES thread)
    return()
  elseif(OSTREL_SANITIZER)
    foreach(library libasan.so libubsan.so libstdc++.so)
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}
                      OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
      string(APPEND preload "${path} ")
    endforeach()
    list(APPEND environment "LD_PRELOAD=${preload}" ASAN_OPTIONS=detect_leaks=0)
  endif()
  foreach(test ${tests})
    get_filename_component(name ${test} NAME_WE)
    foreach(version 27 3)
      set(id ${PREFIX}.${OSTREL_PYTHON${version}_NAME}.${name})
      add_test(NAME ${id} COMMAND ${OSTREL_PYTHON${version}} ${test} -v)
      set(folder ${CMAKE_BINARY_DIR}/${OSTREL_PYTHON${version}_NAME})
      set_tests_properties(${id} PROPERTIES TIMEOUT 600
        ENVIRONMENT "${environment};PYTHONPATH=${folder}")
    endforeach()
  endforeach()
endfunction()
