# In a build for the thread sanitizer, what tells it of Qt's locks and threads.
if(QUARVCHART_SANITIZE MATCHES "thread")
    add_library(quarvchart_thread_watch OBJECT ${PROJECT_SOURCE_DIR}/tests/support/tsanshim.cpp)
    target_link_libraries(quarvchart_thread_watch
        PUBLIC Qt5::Core ${CMAKE_DL_LIBS}
        PRIVATE quarvchart_build_options)
endif()

# quarvchart_watch_threads(<program>)
#
# Makes a program fit for the thread sanitizer; does nothing in other builds.
function(quarvchart_watch_threads program)
    if(TARGET quarvchart_thread_watch)
        target_link_libraries(${program} PRIVATE quarvchart_thread_watch)
    endif()
endfunction()
