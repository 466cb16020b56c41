# The tests: one GoogleTest program a room, entered in ctest suite by suite; the scripts, folder by folder.
if(NOT BRISOLAN_TESTS)
    return()
endif()
find_package(GTest REQUIRED)

# Fixtures that the rooms share.
brisolan_library(brisolan_test_support tests/support)
target_link_libraries(brisolan_test_support ${brisolan_test_support_SCOPE} GTest::gtest brisolan_parts)

foreach(room core transport io view edit kernel toolbox boxes headless desktop qt app)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${room}/*.cpp)
    if(room STREQUAL "desktop" AND NOT BRISOLAN_HAVE_RTMIDI)
        list(FILTER sources EXCLUDE REGEX "/(live|jack)_[^/]*$")
    endif()
    if(room STREQUAL "qt" AND NOT BRISOLAN_HAVE_QT)
        set(sources "")
    endif()
    if(sources)
        set(program test_${room})
        add_executable(${program} ${sources})
        # The support library stands before gtest_main, so that a main of its own would be taken.
        target_link_libraries(${program} PRIVATE
            brisolan_flags brisolan_test_support GTest::gtest_main brisolan_parts)
        target_compile_definitions(${program} PRIVATE BRISOLAN_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
        if(room STREQUAL "qt")
            target_link_libraries(${program} PRIVATE brisolan_qt)
        endif()
        if(room MATCHES "^(app|desktop)$" AND TARGET brisolan)
            # Its tests run the program beside them.
            target_compile_definitions(${program} PRIVATE
                BRISOLAN_PROGRAM="$<TARGET_FILE:brisolan>" BRISOLAN_DESKTOP=$<BOOL:${BRISOLAN_DESKTOP}>)
            add_dependencies(${program} brisolan)
        endif()
        # One ctest entry a suite: a process for each of its tests would cost more than the tests. The list is taken
        # from the program itself each time that it is linked.
        set(entries ${CMAKE_BINARY_DIR}/tests/${program}.cmake)
        add_custom_command(TARGET ${program} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -D PROGRAM=$<TARGET_FILE:${program}> -D ROOM=${room} -D ENTRIES=${entries}
                    -P ${CMAKE_SOURCE_DIR}/cmake/ListSuites.cmake
            VERBATIM)
        if(NOT EXISTS ${entries})
            # ctest before the first build says that the tests are missing; it does not pass without them.
            file(WRITE ${entries} "add_test(${room}.NOT_BUILT ${program}_NOT_BUILT)\n")
        endif()
        set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${entries})
    endif()
endforeach()

# Every folder that has scripts is one entry; the runner names each script that fails.
file(GLOB_RECURSE scripts CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests/*.script)
set(folders "")
foreach(script IN LISTS scripts)
    cmake_path(GET script PARENT_PATH folder)
    list(APPEND folders ${folder})
endforeach()
list(REMOVE_DUPLICATES folders)
if(TARGET brisolan)
    foreach(folder IN LISTS folders)
        string(REGEX REPLACE "^tests/" "" label ${folder})
        add_test(NAME scripts/${label}
            COMMAND ${CMAKE_SOURCE_DIR}/tests/run-scripts $<TARGET_FILE:brisolan> ${CMAKE_SOURCE_DIR}/${folder})
        set_tests_properties(scripts/${label} PROPERTIES LABELS scripts TIMEOUT 300)
    endforeach()
endif()
