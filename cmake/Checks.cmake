# Checks of the tree itself, as tests. They look at sources, not at what the compiler made of them, so one build has
# them: the one without sanitizers or coverage.
if(NOT BRISOLAN_TESTS OR BRISOLAN_SANITIZE OR BRISOLAN_COVERAGE)
    return()
endif()

foreach(check format includes walls-hold scripts-hold)
    add_test(NAME checks/${check} COMMAND ${CMAKE_SOURCE_DIR}/tests/checks/${check}.sh)
    set_property(TEST checks/${check} PROPERTY LABELS checks)
endforeach()
add_test(NAME checks/misfits COMMAND ${CMAKE_SOURCE_DIR}/tests/checks/misfits.sh ${CMAKE_CXX_COMPILER})
set_property(TEST checks/misfits PROPERTY LABELS checks)
add_test(NAME checks/links-alone-holds
    COMMAND ${CMAKE_SOURCE_DIR}/tests/checks/links-alone-holds.sh ${CMAKE_CXX_COMPILER})
set_property(TEST checks/links-alone-holds PROPERTY LABELS checks)
if(brisolan_object_SCOPE STREQUAL "PUBLIC")
    add_test(NAME checks/links-alone COMMAND
        ${CMAKE_SOURCE_DIR}/tests/checks/links-alone.sh $<TARGET_FILE:brisolan_object> ${CMAKE_CXX_COMPILER})
    set_property(TEST checks/links-alone PROPERTY LABELS checks)
endif()

# Every header compiles alone, and twice. Built by its test only, since it costs a compilation a header.
file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}
    core/*.h transport/*.h io/*.h view/*.h edit/*.h host/*.h app/*.h tests/*.h)
set(sources "")
foreach(header IN LISTS headers)
    cmake_path(GET header FILENAME file)
    if((file MATCHES "^qt_" AND NOT BRISOLAN_HAVE_QT) OR (file MATCHES "^rtmidi_" AND NOT BRISOLAN_HAVE_RTMIDI)
        OR (file MATCHES "^jack_" AND NOT BRISOLAN_HAVE_JACK)
        OR (file MATCHES "^fluidsynth_" AND NOT BRISOLAN_HAVE_FLUIDSYNTH))
        continue()
    endif()
    set(source ${CMAKE_BINARY_DIR}/headers-alone/${header}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
    list(APPEND sources ${source})
endforeach()
if(sources)
    add_library(brisolan_headers_alone OBJECT EXCLUDE_FROM_ALL ${sources})
    target_link_libraries(brisolan_headers_alone PRIVATE
        brisolan_flags brisolan_desktop_options brisolan_qt_options GTest::gtest CLI11::CLI11 PNG::PNG)
    add_test(NAME checks/headers-alone
        COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target brisolan_headers_alone)
    set_tests_properties(checks/headers-alone PROPERTIES LABELS checks TIMEOUT 900)
endif()
