# What every target of this tree shares: language level, warnings as errors, sanitizers, output folder.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# The folder of each twin: src/platform/${QLX_PLATFORM}, tests/support/${QLX_PLATFORM} and the like.
if(WIN32)
  set(QLX_PLATFORM windows)
else()
  set(QLX_PLATFORM linux)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  # Without these two it would pass by whatever has a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
                    -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough -Werror)
if(QLX_SANITIZE)
  add_compile_options(-fsanitize=${QLX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QLX_SANITIZE})
endif()
if(QLX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(NOT WIN32)
  find_package(PkgConfig REQUIRED)
endif()
find_package(Threads REQUIRED)
