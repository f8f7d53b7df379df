# Fails if DOCUMENT does not show PROGRAM as it stands.
file(READ ${DOCUMENT} document)
file(READ ${PROGRAM} program)
string(FIND "${document}" "${program}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "${DOCUMENT} does not show ${PROGRAM} as it stands")
endif()
