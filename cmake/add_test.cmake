# tool_gpio_add_test(NAME <name> SOURCES <file>... [LIBRARIES <target>...] [TIMEOUT <seconds>] [BELOW <program>])
#
# Adds one QtTest program and its ctest test "<folder>/<name>" with the label <folder>, the folder of tests/ that
# calls this. Tests run without a display and in one locale everywhere; below a program where one is named.
function(tool_gpio_add_test)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME;TIMEOUT;BELOW" "SOURCES;LIBRARIES")
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    set(target test_${folder}_${arg_NAME})
    add_executable(${target} ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/${folder})
    target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} test_support Qt5::Test project_options)
    if(CMAKE_CXX_VISIBILITY_PRESET STREQUAL hidden) # what was read with another one is of no use
        target_precompile_headers(${target} REUSE_FROM test_headers)
    endif()
    tool_gpio_call_moc(${target})
    set(command ${target})
    if(arg_BELOW)
        set(command ${arg_BELOW} $<TARGET_FILE:${target}>)
    endif()
    add_test(NAME ${folder}/${arg_NAME} COMMAND ${command})
    tool_gpio_set_test_surroundings(${folder}/${arg_NAME} ${folder} "${arg_TIMEOUT}")
endfunction()

# tool_gpio_call_moc(<program>)
#
# Calls moc for each source of a program of tests, which includes the result by its own name with the suffix "moc". To
# search the sources of a hundred programs for what moc might be needed for would take a fifth of the whole build.
function(tool_gpio_call_moc target)
    set(mocs ${CMAKE_CURRENT_BINARY_DIR}/${target}_mocs)
    set_target_properties(${target} PROPERTIES AUTOMOC OFF)
    target_include_directories(${target} PRIVATE ${mocs})
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    foreach(source IN LISTS sources)
        cmake_path(GET source STEM name)
        qt5_generate_moc(${source} ${mocs}/${name}.moc)
        target_sources(${target} PRIVATE ${mocs}/${name}.moc)
    endforeach()
endfunction()

# tool_gpio_run_again(<name> <suffix> <variable=value>...)
#
# Runs the test program of the ctest test "<folder>/<name>" once more, with these variables in its environment, as
# "<folder>/<name>_<suffix>".
function(tool_gpio_run_again name suffix)
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    set(run ${folder}/${name}_${suffix})
    add_test(NAME ${run} COMMAND test_${folder}_${name})
    tool_gpio_set_test_surroundings(${run} ${folder} "")
    set_property(TEST ${run} APPEND PROPERTY ENVIRONMENT ${ARGN})
endfunction()

# Gives the ctest test <name> its label, its environment and, when it is not empty, its time limit. What windows
# remember is kept with the build, and so are compiled pages: Qt crashes where another build of the bench replaces one
# while it is read.
function(tool_gpio_set_test_surroundings name label timeout)
    set_tests_properties(${name} PROPERTIES
        LABELS ${label}
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;XDG_CACHE_HOME=${CMAKE_BINARY_DIR}/tests/cache;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/tests/config;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:halt_on_error=1:history_size=7")
    if(timeout)
        set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout})
    endif()
endfunction()
