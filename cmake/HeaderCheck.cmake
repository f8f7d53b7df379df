# Compiles each public header alone, so that a user may include it first. Built on demand by the
# target quarvchart_header_check.
set(sources)
foreach(header IN LISTS QUARVCHART_PUBLIC_HEADERS)
    string(REPLACE "/" "_" name ${header})
    set(source ${PROJECT_BINARY_DIR}/header_check/${name}.cpp)
    file(GENERATE OUTPUT ${source} CONTENT "#include \"${header}\"\n")
    list(APPEND sources ${source})
endforeach()
add_library(quarvchart_header_check OBJECT EXCLUDE_FROM_ALL ${sources})
target_link_libraries(quarvchart_header_check
    PRIVATE QUARVChart5::QUARVChart5 quarvchart_build_options)
