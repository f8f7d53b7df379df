# The documents for users: HTML, and quarvchart5.qch for Qt Assistant, both in docs/ of the build
# folder. Built on demand by the target quarvchart_docs, which fails at a warning of Doxygen's.
find_package(Doxygen 1.9 QUIET)
find_program(QHELPGENERATOR NAMES qhelpgenerator qhelpgenerator-qt5 HINTS /usr/lib/qt5/bin)
if(NOT DOXYGEN_FOUND OR NOT QHELPGENERATOR)
    message(STATUS "Doxygen or qhelpgenerator is missing: no target quarvchart_docs")
    return()
endif()

set(docs_dir ${PROJECT_BINARY_DIR}/docs)
set(docs_pages
    mainpage
    howto-live-data
    howto-finished-data
    howto-own-model
    howto-own-series
    howto-settings
    howto-paper
    howto-several-charts
    threads
    performance)
list(TRANSFORM docs_pages PREPEND ${PROJECT_SOURCE_DIR}/docs/)
list(TRANSFORM docs_pages APPEND .md)
set(docs_headers ${QUARVCHART_PUBLIC_HEADERS} quarvchart_translation.h)
list(TRANSFORM docs_headers PREPEND ${PROJECT_SOURCE_DIR}/)

set(docs_input
    ${docs_pages}
    ${docs_headers}
    ${PROJECT_BINARY_DIR}/generated/quarvchart_version.h)
list(JOIN docs_input "\" \\\n                         \"" docs_input)
set(docs_input "\"${docs_input}\"")
configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${docs_dir}/Doxyfile @ONLY)

# What an earlier run has left would stay in the folder: pages of classes that are gone.
add_custom_target(quarvchart_docs
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${docs_dir}/html ${docs_dir}/quarvchart5.qch
    COMMAND Doxygen::doxygen ${docs_dir}/Doxyfile
    COMMENT "Documents for users"
    VERBATIM)

if(QUARVCHART_INSTALL)
    install(DIRECTORY ${docs_dir}/html
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation OPTIONAL)
    install(FILES ${docs_dir}/quarvchart5.qch
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation OPTIONAL)
endif()
