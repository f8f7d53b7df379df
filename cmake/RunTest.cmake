# Runs PROGRAM with HOME as its emptied home folder, and fails as it does.
file(REMOVE_RECURSE ${HOME})
file(MAKE_DIRECTORY ${HOME}/config ${HOME}/run)
file(CHMOD ${HOME}/run PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${result}")
endif()
