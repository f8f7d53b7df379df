# Fails if README does not show PROGRAM as it stands.
file(READ ${README} readme)
file(READ ${PROGRAM} program)
string(FIND "${readme}" "${program}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "${README} does not show ${PROGRAM} as it stands")
endif()
