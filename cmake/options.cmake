# Compile options of all our own code: warnings are errors; sanitizers and coverage come by preset.

option(BUILD_TESTING "Build the tests" ON)
option(SANITIZE "Build with the address, leak and undefined-behaviour sanitizers" OFF)
option(SANITIZE_THREAD "Build with the thread sanitizer" OFF)
option(COVERAGE "Build with coverage instrumentation" OFF)
option(BENCHMARKS "Describe the benchmarks too, beside the tests (needs Google Benchmark); the target benchmarks builds them" OFF)
option(FUZZ "Build the fuzzers of tests/fuzz, with the sanitizers; needs clang" OFF)

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    # It takes the sources of a unit for headers, whose classes must not have members of unnamed namespaces.
    target_compile_options(project_options INTERFACE -Wno-subobject-linkage)
endif()
target_compile_definitions(project_options INTERFACE QT_DEPRECATED_WARNINGS)
if(NOT HOST_SDK_DIR)
    # They narrow what Qt accepts, which the headers of another host may use.
    target_compile_definitions(project_options INTERFACE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_STRICT_ITERATORS)
endif()

# What nearly every source of the host, the devices and the bench includes, directly or not: read by the compiler once, it is
# a third of what compiling them takes. More of it would take longer to load than to read. The plugin's sources are
# compiled as they stand.
set(read_ahead
    <QHash> <QMap> <QObject> <QPointer> <QSet> <QString> <QStringList> <QTimer> <QVariant> <QVector>
    <algorithm> <deque> <functional> <map> <memory> <optional> <string> <vector>)

# Debug information then describes the host's classes whole: tools/check-host compares their sizes.
set(whole_class_debug_option $<IF:$<CXX_COMPILER_ID:Clang>,-fstandalone-debug,-femit-class-debug-always>)

if(SANITIZE OR SANITIZE_THREAD)
    # Half the time of compiling, for programs that mostly wait.
    add_compile_options(-O1 -g1 -fno-omit-frame-pointer)
endif()

if(SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
endif()

if(SANITIZE_THREAD)
    add_compile_options(-fsanitize=thread)
    add_link_options(-fsanitize=thread)
endif()

if(COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic -g0)
    add_link_options(--coverage)
endif()

if(FUZZ)
    # What counts as a crash beyond the usual: a number that does not fit its integer type.
    set(fuzz_sanitizers address,undefined,float-cast-overflow)
    add_compile_options(-fsanitize=${fuzz_sanitizers},fuzzer-no-link -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${fuzz_sanitizers})
    add_compile_definitions(QT_FORCE_ASSERTS _GLIBCXX_ASSERTIONS)
endif()
