# Run after a test program PROGRAM was linked: writes ENTRIES, one add_test for each of its suites.
# Suites whose name tells of threads get the label "threads", which the thread sanitizer's run asks for; those whose name
# begins with "live" measure time, so nothing else runs beside them.
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} --gtest_list_tests: ${status}")
endif()
string(REGEX MATCHALL "(^|\n)[^ \n]+\\.( [^\n]*)?" suites "${listing}")
set(text "")
foreach(suite IN LISTS suites)
    string(REGEX REPLACE "^\n?([^ \n]+)\\..*" "\\1" suite "${suite}")
    if(suite STREQUAL "Running main() from")
        continue()
    endif()
    set(labels ${ROOM})
    if(suite MATCHES "[Tt]hread|[Rr]eal_?[Tt]ime")
        list(APPEND labels threads)
    endif()
    set(serial FALSE)
    if(suite MATCHES "^live")
        set(serial TRUE)
        list(APPEND labels live)
    endif()
    string(APPEND text "add_test([==[${ROOM}.${suite}]==] [==[${PROGRAM}]==] --gtest_brief=1 "
        "[==[--gtest_filter=${suite}.*]==])\n"
        "set_tests_properties([==[${ROOM}.${suite}]==] PROPERTIES TIMEOUT 300 LABELS \"${labels}\" "
        "RUN_SERIAL ${serial} SKIP_REGULAR_EXPRESSION \"was not tested:\")\n")
endforeach()
file(WRITE ${ENTRIES} "${text}")
