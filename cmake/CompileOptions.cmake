# Warnings for our own code (the libraries we build from source do not get them) and sanitizers for
# everything.
option(OSTREL_SANITIZE "Build with address and undefined-behaviour sanitizers" OFF)

if(OSTREL_SANITIZE)
  # -g1: lines for the sanitizers' reports; more would cost a fifth of the build.
  add_compile_options(-O1 -g1 -fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

option(OSTREL_FUZZ "Build the fuzz targets; needs clang and OSTREL_SANITIZE" OFF)

if(OSTREL_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link -O2)
endif()

add_library(ostrel_options INTERFACE)
target_compile_options(ostrel_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
# GCC 12 takes the optimised inside of std::string's own operations for overlapping copies.
target_compile_options(ostrel_options INTERFACE -Wno-restrict)
if(OSTREL_FUZZ) # the warnings of another compiler are left to clang-tidy
  target_compile_options(ostrel_options INTERFACE -w)
endif()
target_include_directories(ostrel_options INTERFACE ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
if(WIN32)
  target_compile_definitions(ostrel_options INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX
                                                      _WIN32_WINNT=0x0601)
endif()

# ostrel_library(NAME SOURCES... DEPENDS targets...): one static library of our own.
function(ostrel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ostrel_options ${ARG_DEPENDS})
endfunction()

# ostrel_program(NAME SOURCES... DEPENDS targets...): one program, in the preset's own folder.
function(ostrel_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ostrel_options ${ARG_DEPENDS})
endfunction()

# ostrel_test(NAME DIRECTORIES... DEPENDS targets...): one test program from all sources of the
# directories.
function(ostrel_test name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  list(TRANSFORM ARG_UNPARSED_ARGUMENTS APPEND /*.cpp)
  file(GLOB sources CONFIGURE_DEPENDS ${ARG_UNPARSED_ARGUMENTS})
  ostrel_program(${name} SOURCES ${sources} DEPENDS ${ARG_DEPENDS} GTest::gmock_main)
  # Most of the time to build everything is for the tests' own code, which is neither to be fast nor
  # what is looked at for undefined behaviour.
  target_compile_options(
    ${name} PRIVATE -O0 $<IF:$<BOOL:${OSTREL_SANITIZE}>,-fno-sanitize=undefined,-U_FORTIFY_SOURCE>)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
