# Fails if a translation lacks a text of the sources, or has one that is not there any more.
#
#   LUPDATE, SOURCE (the repository), FOLDERS (of the sources, in it), TRANSLATIONS (files), WORK;
#   lists are separated by commas
file(REMOVE_RECURSE ${WORK})
string(REPLACE "," ";" folders ${FOLDERS})
string(REPLACE "," ";" translations ${TRANSLATIONS})
foreach(translation IN LISTS translations)
    get_filename_component(name ${translation} NAME)
    file(COPY ${translation} DESTINATION ${WORK})
    execute_process(
        COMMAND ${LUPDATE} -silent -I . -locations none -no-ui-lines ${folders} -ts ${WORK}/${name}
        WORKING_DIRECTORY ${SOURCE}
        RESULT_VARIABLE result)
    file(READ ${WORK}/${name} text)
    if(NOT result EQUAL 0 OR text MATCHES "type=\"(unfinished|vanished|obsolete)\"")
        message(FATAL_ERROR "${name} is not complete: build quarvchart_update_translations")
    endif()
endforeach()
