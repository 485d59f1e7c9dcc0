# Compile options of all our own code: warnings are errors; sanitizers and coverage come by preset.

option(SANITIZE "Build with the address, leak and undefined-behaviour sanitizers" OFF)
option(COVERAGE "Build with coverage instrumentation" OFF)
option(BENCHMARKS "Describe the benchmarks too (needs Google Benchmark); the target benchmarks builds them" OFF)

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
target_compile_definitions(project_options INTERFACE
    QT_DEPRECATED_WARNINGS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS)

if(SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
