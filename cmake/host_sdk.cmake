# The targets utilities and plugin_management of another host: headers in ${HOST_SDK_DIR}/include, libraries in
# ${HOST_SDK_DIR}/lib.
foreach(library utilities plugin_management)
    set(location ${HOST_SDK_DIR}/lib/${CMAKE_SHARED_LIBRARY_PREFIX}${library}${CMAKE_SHARED_LIBRARY_SUFFIX})
    if(NOT EXISTS ${location} OR NOT IS_DIRECTORY ${HOST_SDK_DIR}/include/${library})
        message(FATAL_ERROR
            "HOST_SDK_DIR is \"${HOST_SDK_DIR}\": expected ${location} and ${HOST_SDK_DIR}/include/${library}/")
    endif()
    add_library(${library} SHARED IMPORTED)
    set_target_properties(${library} PROPERTIES
        IMPORTED_LOCATION ${location}
        INTERFACE_INCLUDE_DIRECTORIES ${HOST_SDK_DIR}/include)
    target_link_libraries(${library} INTERFACE Qt5::Core)
endforeach()
target_link_libraries(plugin_management INTERFACE utilities)
