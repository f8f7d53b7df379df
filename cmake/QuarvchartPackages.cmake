# Debian packages, made by cpack -G DEB: one for each component of the installation.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quarvchart5)
set(CPACK_PACKAGE_CONTACT "QUARVChart5 maintainers <quarvchart5@users.noreply.example.org>"
    CACHE STRING "Name and address of who answers for the packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE quarvchart5)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What the binaries link is found by dpkg-shlibdeps, and what they offer is told to it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")

string(TIMESTAMP PACKAGE_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(debian_files ${PROJECT_BINARY_DIR}/debian)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in ${debian_files}/changelog.Debian @ONLY)
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/copyright.in ${debian_files}/copyright @ONLY)
find_program(QUARVCHART_GZIP gzip REQUIRED)

# quarvchart_gzip(<input> <output>): no name and no time inside, so that the same input gives the
# same output.
function(quarvchart_gzip input output)
    execute_process(COMMAND ${QUARVCHART_GZIP} --best --no-name --stdout ${input}
        OUTPUT_FILE ${output} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
quarvchart_gzip(${debian_files}/changelog.Debian ${debian_files}/changelog.Debian.gz)

# quarvchart_add_package(<component> <package> <section> <summary> <description>)
#
# Makes a package of a component, and puts into it what each package has to hold.
macro(quarvchart_add_package component package section summary description)
    string(TOUPPER ${component} upper)
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
    set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${section})
    set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}")
    install(FILES ${debian_files}/copyright ${debian_files}/changelog.Debian.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${package}
        COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

quarvchart_add_package(runtime libquarvchart5-${PROJECT_VERSION_MAJOR} libs
    "chart widgets for live and finished series - library"
    "QUARVChart5 shows series of millions of samples in stacked panes above a\n\
legend, with zoom, undo and settings that are kept. This package holds\n\
what programs need to run.")
# The images are drawn by a plug-in of Qt's, which nothing links.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libqt5svg5 (>= 5.15)")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)

quarvchart_add_package(development libquarvchart5-dev libdevel
    "chart widgets for live and finished series - development files"
    "QUARVChart5 shows series of millions of samples in stacked panes above a\n\
legend. This package holds its headers, and its files for CMake,\n\
pkg-config and qmake.")
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS quarvchart5-designer)

if(TARGET quarvchart_designer_plugin)
    quarvchart_add_package(designer quarvchart5-designer libdevel
        "chart widgets for live and finished series - Qt Designer plug-in"
        "QUARVChart5 shows series of millions of samples in stacked panes above a\n\
legend. This package puts its widget into Qt Designer's widget box, and\n\
lets programs load forms that hold it.")
    set(CPACK_COMPONENT_DESIGNER_DEPENDS runtime)
endif()

if(QUARVCHART_BUILD_EXAMPLES)
    quarvchart_add_package(examples quarvchart5-examples science
        "chart widgets for live and finished series - example programs"
        "QUARVChart5 shows series of millions of samples in stacked panes above a\n\
legend. This package holds a viewer of CSV files, and a live monitor of\n\
the machine.")
    set(CPACK_COMPONENT_EXAMPLES_DEPENDS runtime)
    foreach(program csvviewer monitor)
        set(page ${debian_files}/quarvchart5-${program}.1.gz)
        quarvchart_gzip(${PROJECT_SOURCE_DIR}/examples/${program}/${program}.1 ${page})
        install(FILES ${page}
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT examples EXCLUDE_FROM_ALL)
    endforeach()
endif()

include(CPack)
