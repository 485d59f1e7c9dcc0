# Included by the project of a work copy. Each fault compiles one source anew, most of which is Qt, and
# links a test: both are made fast. Qt's assertions stay; a fault that the compiler would only warn of is tried.
set(CMAKE_BUILD_TYPE Debug)
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -w")
set(CMAKE_EXE_LINKER_FLAGS -fuse-ld=gold)
set(CMAKE_CXX_COMPILER_LAUNCHER "")
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

# The targets do not exist yet; the others read these ahead already.
foreach(target p_tool_gpio_recorded p_tool_gpio_objects)
    cmake_language(EVAL CODE "cmake_language(DEFER DIRECTORY \${CMAKE_SOURCE_DIR} CALL target_precompile_headers
        ${target} PRIVATE <QAbstractListModel> <QDebug> <QMap> <QSharedPointer> <QTimer> <QUuid> <QVariant>)")
endforeach()
