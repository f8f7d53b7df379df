# The translations: compiled, and taken into what they belong to; those of the library are installed
# beside it too, for those who load them by themselves. Without Qt's tool for them all speak English.
find_package(Qt5LinguistTools 5.15 QUIET)

if(Qt5LinguistTools_FOUND)
    # Brings the texts of the sources into the translations: to be run by hand, and committed.
    add_custom_target(quarvchart_update_translations)
else()
    message(STATUS "Qt5LinguistTools is missing: no translations")
endif()

set(QUARVCHART_LANGUAGES de ru)

# quarvchart_add_translations(<target> <name>
#     PREFIX <prefix> LOADER <source> FOLDER <folder> SOURCES <folder>...)
#
# Takes the translations <folder>/<name>_<language>.ts of the texts in the sources into <target>, as
# resources under :/<prefix>. Their initializer is named after the prefix, with _ for /;
# HAS_TRANSLATIONS tells the source that loads them that there is one. Folders are the repository's.
function(quarvchart_add_translations target name)
    cmake_parse_arguments(PARSE_ARGV 2 arg "" "PREFIX;LOADER;FOLDER" "SOURCES")
    if(NOT Qt5LinguistTools_FOUND)
        return()
    endif()

    set(ts_files)
    set(qrc_entries)
    foreach(language IN LISTS QUARVCHART_LANGUAGES)
        list(APPEND ts_files ${PROJECT_SOURCE_DIR}/${arg_FOLDER}/${name}_${language}.ts)
        string(APPEND qrc_entries "    <file>${name}_${language}.qm</file>\n")
    endforeach()
    set(work ${PROJECT_BINARY_DIR}/${arg_FOLDER})
    set_source_files_properties(${ts_files} PROPERTIES OUTPUT_LOCATION ${work})
    qt5_add_translation(qm_files ${ts_files})

    string(REPLACE "/" "_" resource ${arg_PREFIX})
    set(qrc ${work}/${resource}.qrc)
    file(WRITE ${qrc}.new
        "<RCC>\n  <qresource prefix=\"/${arg_PREFIX}\">\n${qrc_entries}  </qresource>\n</RCC>\n")
    configure_file(${qrc}.new ${qrc} COPYONLY)
    qt5_add_resources(translation_source ${qrc})
    target_sources(${target} PRIVATE ${translation_source})
    set_source_files_properties(${arg_LOADER} PROPERTIES COMPILE_DEFINITIONS HAS_TRANSLATIONS)

    # For the test that they are complete.
    set_target_properties(${target} PROPERTIES
        QUARVCHART_TRANSLATIONS "${ts_files}"
        QUARVCHART_TRANSLATED_FOLDERS "${arg_SOURCES}")

    add_custom_target(quarvchart_update_translations_of_${name}
        COMMAND Qt5::lupdate -I . -locations none -no-ui-lines ${arg_SOURCES} -ts ${ts_files}
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        VERBATIM)
    add_dependencies(quarvchart_update_translations quarvchart_update_translations_of_${name})

    set(qm_files ${qm_files} PARENT_SCOPE)
endfunction()

quarvchart_add_translations(QUARVChart5 quarvchart5
    PREFIX chart/translations
    LOADER quarvchart_translation.cpp
    FOLDER translations
    SOURCES axes editors model series settings undo views)
if(QUARVCHART_INSTALL AND Qt5LinguistTools_FOUND)
    install(FILES ${qm_files}
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/QUARVChart5/translations COMPONENT runtime)
endif()
