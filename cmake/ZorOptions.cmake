# Compiler, warnings and output layout shared by every target of the project.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 17)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

option(ZOR_ASAN "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(ZOR_TIDY "Run clang-tidy on our own code while compiling" OFF)
option(ZOR_WERROR "Treat warnings in our own code as errors" ON)

find_program(ZOR_CCACHE ccache)
if(ZOR_CCACHE)
  set(CMAKE_C_COMPILER_LAUNCHER ${ZOR_CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ZOR_CCACHE})
endif()

# One folder for libraries and one for Python modules, so that $ORIGIN-relative
# run paths and a single sys.path entry are enough to run from the build tree.
set(ZOR_LIBRARY_DIR ${CMAKE_BINARY_DIR}/lib)
set(ZOR_PYTHON_DIR ${CMAKE_BINARY_DIR}/python)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${ZOR_LIBRARY_DIR})
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# Flags of our own code; generated wrappers use zor_generated_flags.
add_library(zor_own_flags INTERFACE)
target_compile_options(zor_own_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual=1> -Wcast-align $<$<BOOL:${ZOR_WERROR}>:-Werror>)
add_library(zor_generated_flags INTERFACE)
target_compile_options(zor_generated_flags INTERFACE -w)

# A library calls its own functions directly; nobody puts others in their place.
add_link_options(-Wl,-Bsymbolic-functions)

if(ZOR_ASAN)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=address,undefined)
endif()

if(ZOR_TIDY)
  find_program(ZOR_CLANG_TIDY clang-tidy REQUIRED)
  # It reads the compiler's own options, of which it knows not all.
  set(ZOR_CLANG_TIDY ${ZOR_CLANG_TIDY} --extra-arg=-Wno-unknown-warning-option)
endif()

# Generated wrappers take gigabytes each to compile, so they have a pool of their own.
set(ZOR_WRAPPER_JOBS 1 CACHE STRING "How many generated wrappers may be compiled at once")
set_property(GLOBAL PROPERTY JOB_POOLS zor_wrappers=${ZOR_WRAPPER_JOBS})
