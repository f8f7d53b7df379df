# The flags with which everything of this project is compiled; nothing directory-wide, and nothing
# that reaches a user of the library.
add_library(quarvchart_build_options INTERFACE)
target_compile_options(quarvchart_build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow
    # Nobody puts a function of his own in the place of one of the library's, so these may call each
    # other directly, and be inlined.
    -fno-semantic-interposition
    # The entry of one sample makes a dozen calls into Qt and the C library.
    -fno-plt
    # Optimising, GCC 12 believes that QLinkedList frees its shared empty list, wherever one dies;
    # the count of references rules that out.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-free-nonheap-object>
    $<$<BOOL:${QUARVCHART_WARNINGS_AS_ERRORS}>:-Werror>)
# Qt's deprecation warnings up to the version that is required.
target_compile_definitions(quarvchart_build_options INTERFACE
    QT_DEPRECATED_WARNINGS_SINCE=0x050f00)

if(QUARVCHART_SANITIZE)
    target_compile_options(quarvchart_build_options INTERFACE
        -fsanitize=${QUARVCHART_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(quarvchart_build_options INTERFACE -fsanitize=${QUARVCHART_SANITIZE})
    if(QUARVCHART_SANITIZE MATCHES "undefined")
        target_compile_options(quarvchart_build_options INTERFACE
            -fno-sanitize-recover=undefined)
    endif()
endif()
