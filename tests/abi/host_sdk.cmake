# Makes a host SDK of the recording host, whose headers use more of Qt than our own sources may, configures the project
# anew against it, builds the plugin and runs the tests of its library there.
#
# cmake -DSOURCE_DIR=… -DWORK_DIR=… -DINCLUDE_DIR=… -DLIBRARY_DIR=… -DGENERATOR=… -DOPTIONS=… -P host_sdk.cmake

set(prefix ${WORK_DIR}/prefix)
set(build ${WORK_DIR}/build)

function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${result}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(COPY ${INCLUDE_DIR} DESTINATION ${prefix})
file(COPY ${LIBRARY_DIR} DESTINATION ${prefix})
file(COPY ${SOURCE_DIR}/tests/abi/lenient_host.h DESTINATION ${prefix}/include)
file(GLOB headers ${prefix}/include/*/*.h)
foreach(header ${headers})
    file(APPEND ${header} "#include <lenient_host.h>\n")
endforeach()

run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${build} -G ${GENERATOR} -DHOST_SDK_DIR=${prefix} ${OPTIONS})
run(${CMAKE_COMMAND} --build ${build} --target p_tool_gpio abi_tests)
run(${SOURCE_DIR}/tools/check-host ${prefix}/lib --plugin ${build}/plugins/libp_tool_gpio.so)
run(${CMAKE_CTEST_COMMAND} --test-dir ${build} --label-regex "^abi$" --output-on-failure --no-tests=error)

foreach(library utilities plugin_management)
    if(EXISTS ${build}/lib/lib${library}.so)
        message(FATAL_ERROR "the stand-in ${library} was built although the SDK has it")
    endif()
endforeach()

execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/refused -G ${GENERATOR}
        -DHOST_SDK_DIR=${WORK_DIR}/nowhere ${OPTIONS}
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE message)
# CMake breaks its lines where the length of the path has it.
string(REGEX REPLACE "[ \n]+" " " unfolded "${message}")
string(FIND "${unfolded}" "HOST_SDK_DIR is \"${WORK_DIR}/nowhere\": expected ${WORK_DIR}/nowhere/lib/" place)
if(result EQUAL 0 OR place EQUAL -1)
    message(FATAL_ERROR "an SDK that is not there was not refused by name:\n${message}")
endif()
