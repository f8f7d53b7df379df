# What cmake --install puts where, and what other builds find it by.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/QUARVChart5)
set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/QUARVChart5)

install(TARGETS QUARVChart5
    EXPORT QUARVChart5Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        COMPONENT runtime
        NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# Headers stand in their subsystem's folder; a file of the class's own name stands beside those.
foreach(header IN LISTS QUARVCHART_PUBLIC_HEADERS)
    get_filename_component(subsystem ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${header_dir}/${subsystem} COMPONENT development)
endforeach()
install(FILES
    ${PROJECT_BINARY_DIR}/generated/quarvchart_export.h
    ${PROJECT_BINARY_DIR}/generated/quarvchart_version.h
    ${PROJECT_SOURCE_DIR}/quarvchart_translation.h
    DESTINATION ${header_dir} COMPONENT development)
install(DIRECTORY ${PROJECT_BINARY_DIR}/generated/QUARVChart5/
    DESTINATION ${header_dir} COMPONENT development)

# CMake
install(EXPORT QUARVChart5Targets
    NAMESPACE QUARVChart5::
    DESTINATION ${package_dir}
    COMPONENT development)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QUARVChart5Config.cmake.in
    ${PROJECT_BINARY_DIR}/QUARVChart5Config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QUARVChart5ConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/QUARVChart5Config.cmake
    ${PROJECT_BINARY_DIR}/QUARVChart5ConfigVersion.cmake
    DESTINATION ${package_dir} COMPONENT development)

# pkg-config and qmake: by the way from their file up to the prefix, so that a copy may be moved.
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(pri_dir ${CMAKE_INSTALL_DATAROOTDIR}/QUARVChart5)
file(RELATIVE_PATH PKG_UP /prefix/${pc_dir} /prefix)
file(RELATIVE_PATH PRI_UP /prefix/${pri_dir} /prefix)
set(PKG_CFLAGS)
set(PRI_DEFINES)
if(NOT BUILD_SHARED_LIBS)
    set(PKG_CFLAGS " -DQUARVCHART_STATIC_DEFINE")
    set(PRI_DEFINES "DEFINES += QUARVCHART_STATIC_DEFINE")
endif()
foreach(file quarvchart5.pc quarvchart5.pri)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/${file}.in ${PROJECT_BINARY_DIR}/${file} @ONLY)
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/quarvchart5.pc
    DESTINATION ${pc_dir} COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/quarvchart5.pri
    DESTINATION ${pri_dir} COMPONENT development)
