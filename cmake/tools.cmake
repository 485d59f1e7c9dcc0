# The targets "format", "format-check" and "lint": our own sources are what git knows below these folders. Each unit is
# checked as it stands, without the headers that are read ahead for it: an include that it lacks is an error.

include(ProcessorCount)
ProcessorCount(processors)
set(list_sources "git ls-files '*.cpp' '*.h'")
set(list_units "git ls-files 'host/*.cpp' 'plugins/*.cpp' 'devices/*.cpp' 'applications/*.cpp'")

add_custom_target(format
    COMMAND bash -c "${list_sources} | xargs clang-format -i"
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} COMMENT "Formatting the sources" VERBATIM)
add_custom_target(format-check
    COMMAND bash -c "${list_sources} | xargs clang-format --dry-run --Werror"
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} COMMENT "clang-format" VERBATIM)
set(lint_folder ${CMAKE_BINARY_DIR}/lint)
add_custom_target(lint
    COMMAND ${CMAKE_COMMAND} -E make_directory ${lint_folder}
    COMMAND bash -c "sed 's/ -include [^ ]*cmake_pch[.]hxx//' '${CMAKE_BINARY_DIR}/compile_commands.json' > '${lint_folder}/compile_commands.json'"
    COMMAND bash -c "${list_units} | xargs -P ${processors} -n 2 clang-tidy --quiet -p '${lint_folder}'"
    COMMAND bash -c "${list_units} | xargs tools/clazy '${lint_folder}'"
    COMMAND bash -c "git ls-files '*.qml' | xargs '${Qt5Core_DIR}/../../../qt5/bin/qmllint'"
    WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} COMMENT "clang-tidy, clazy and qmllint" USES_TERMINAL VERBATIM)
