# Common compile settings and the helpers every folder uses to declare its target.

add_library(sheafwork_warnings INTERFACE)
target_compile_options(sheafwork_warnings INTERFACE -Wall -Wextra -Wpedantic)
if(SHEAFWORK_WERROR)
  target_compile_options(sheafwork_warnings INTERFACE -Werror)
endif()

if(SHEAFWORK_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

if(SHEAFWORK_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "SHEAFWORK_FUZZ needs clang (configure with CXX=clang++)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Release builds optimise most of the program with -O2, which keeps it small:
# it is mapped anew at every run, and a short plot spends much of its time
# faulting in code. The libraries a large drawing spends its time in are
# declared HOT and get -O3.
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

# sheafwork_library(<folder> [HOT] SOURCES ... [DEPS ...])
# One folder of src/ is one static library named sheafwork_<folder>; its
# headers are included as "<folder>/<header>.h" from the src/ root.
function(sheafwork_library name)
  cmake_parse_arguments(ARG "HOT" "" "SOURCES;DEPS" ${ARGN})
  add_library(sheafwork_${name} STATIC ${ARG_SOURCES})
  target_include_directories(sheafwork_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(sheafwork_${name} PUBLIC ${ARG_DEPS} PRIVATE sheafwork_warnings)
  if(ARG_HOT)
    target_compile_options(sheafwork_${name} PRIVATE $<$<CONFIG:Release>:-O3>)
  endif()
endfunction()

# sheafwork_test(<folder> SOURCES ... [DEPS ...])
# One GoogleTest binary per library, discovered by ctest.
function(sheafwork_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  add_executable(${name}_tests ${ARG_SOURCES})
  target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name}_tests PRIVATE ${ARG_DEPS} GTest::gtest GTest::gmock GTest::gtest_main
                                              sheafwork_warnings)
  target_compile_definitions(${name}_tests PRIVATE SHEAFWORK_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(${name}_tests DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
endfunction()
