# Where things are installed, below the prefix. What the bench loads it finds from where its program is, so that an
# installed tree can be moved.
include(GNUInstallDirs)

set(library_folder ${CMAKE_INSTALL_LIBDIR}/appvantor)
set(plugin_folder ${CMAKE_INSTALL_LIBDIR}/qt5/plugins/appvantor)
set(kit_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ToolGpioHost)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/appvantor)
set(check_host_folder ${CMAKE_INSTALL_LIBEXECDIR}/p-tool-gpio)
set(document_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/appvantor)

# tool_gpio_install(<target> <folder> [EXPORT <set>])
#
# Installs a program or library of ours into <folder>; it finds the private libraries from there.
function(tool_gpio_install target folder)
    file(RELATIVE_PATH libraries /${folder} /${library_folder})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${target} ${ARGN} RUNTIME DESTINATION ${folder} LIBRARY DESTINATION ${folder})
endfunction()

# tool_gpio_relative(<variable> <folder>): where <folder> is, seen from the installed program.
function(tool_gpio_relative variable folder)
    file(RELATIVE_PATH relative /${CMAKE_INSTALL_BINDIR} /${folder})
    set(${variable} ${relative} PARENT_SCOPE)
endfunction()
