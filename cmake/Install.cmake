# What `cmake --install` puts where, in two components: `program` (the program, its patches and pages, and what a desktop
# shows of it) and `sdk` (the object's library and the headers that a host needs, for CMake and pkg-config); and the
# Debian packages of both, by `cpack -G DEB` (docs/release.md). Builds with sanitizers or coverage install nothing.
if(BRISOLAN_SANITIZE OR BRISOLAN_COVERAGE OR BRISOLAN_FUZZ OR NOT TARGET brisolan)
    return()
endif()
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(packaging ${CMAKE_SOURCE_DIR}/packaging)

# The manual page and the shells' completions come from the program's own options.
set(reference ${CMAKE_BINARY_DIR}/reference)
file(MAKE_DIRECTORY ${reference})
file(GLOB sources CONFIGURE_DEPENDS ${packaging}/reference/*.cpp)
add_executable(make_reference ${sources})
target_link_libraries(make_reference PRIVATE brisolan_parts brisolan_flags)
add_custom_command(
    OUTPUT ${reference}/brisolan.1 ${reference}/brisolan.bash ${reference}/brisolan.zsh ${reference}/brisolan.fish
    COMMAND make_reference ${packaging}/reference/brisolan.1.in ${reference}
    DEPENDS make_reference ${packaging}/reference/brisolan.1.in
    VERBATIM)
add_custom_target(reference ALL DEPENDS ${reference}/brisolan.1)

# Everything that is installed, for who does not want to build the tests and benchmarks first.
add_custom_target(installable DEPENDS brisolan brisolan_object reference)

# The program.
install(TARGETS brisolan RUNTIME COMPONENT program)
if(TARGET brisolan-editor)
    # What `brisolan edit` becomes: nobody starts it by itself.
    install(TARGETS brisolan-editor DESTINATION libexec/brisolan COMPONENT program)
endif()
install(FILES ${patches} DESTINATION share/brisolan/patches COMPONENT program)
install(FILES ${reference}/brisolan.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
install(FILES ${reference}/brisolan.bash
    DESTINATION share/bash-completion/completions RENAME brisolan COMPONENT program)
install(FILES ${reference}/brisolan.fish
    DESTINATION share/fish/vendor_completions.d COMPONENT program)
# Debian's zsh looks elsewhere for what packages bring than for what was installed by hand.
install(CODE "
    set(folder site-functions)
    if(CMAKE_INSTALL_PREFIX MATCHES \"/usr$\" AND EXISTS /etc/debian_version)
        set(folder vendor-completions)
    endif()
    file(INSTALL \"${reference}/brisolan.zsh\" DESTINATION \"\${CMAKE_INSTALL_PREFIX}/share/zsh/\${folder}\"
        RENAME _brisolan)" COMPONENT program)
set(pages using script-language patch-format document-formats)
list(TRANSFORM pages REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/docs/\\1.md")
install(FILES ${pages} ${CMAKE_SOURCE_DIR}/CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
file(GLOB pieces CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/examples/*.mid)
install(FILES ${pieces} DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT program)
install(FILES ${CMAKE_SOURCE_DIR}/LICENSE
    DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright COMPONENT program)
install(FILES ${packaging}/desktop/brisolan-mime.xml
    DESTINATION share/mime/packages RENAME brisolan.xml COMPONENT program)
if(TARGET brisolan-editor)
    string(TIMESTAMP BRISOLAN_RELEASE_DATE "%Y-%m-%d" UTC) # of the build, by SOURCE_DATE_EPOCH where that is set
    set(metainfo org.brisolan.brisolan.metainfo.xml)
    configure_file(${packaging}/desktop/${metainfo}.in ${CMAKE_BINARY_DIR}/${metainfo} @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${metainfo} DESTINATION share/metainfo COMPONENT program)
    install(FILES ${packaging}/desktop/brisolan.desktop DESTINATION share/applications COMPONENT program)
    install(FILES ${packaging}/desktop/brisolan.svg
        DESTINATION share/icons/hicolor/scalable/apps COMPONENT program)
    foreach(size 48 128 256)
        install(FILES ${packaging}/desktop/brisolan-${size}.png
            DESTINATION share/icons/hicolor/${size}x${size}/apps RENAME brisolan.png COMPONENT program)
    endforeach()
endif()

# The object for other hosts. Its headers lie in a folder of their own, below which they are named as in the source tree.
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/brisolan)
install(FILES host/kel.h host/toolbox.h DESTINATION ${headers}/host COMPONENT sdk)
install(FILES core/class.h DESTINATION ${headers}/core COMPONENT sdk)
install(FILES docs/embedding.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/brisolan-dev COMPONENT sdk)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/brisolan-dev RENAME copyright COMPONENT sdk)
install(DIRECTORY examples/host DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/brisolan-dev/examples COMPONENT sdk)
install(TARGETS brisolan_object brisolan_interfaces EXPORT brisolan
    ARCHIVE COMPONENT sdk INCLUDES DESTINATION ${headers})
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/brisolan)
install(EXPORT brisolan NAMESPACE brisolan:: FILE brisolanTargets.cmake DESTINATION ${package} COMPONENT sdk)
configure_package_config_file(${packaging}/sdk/brisolanConfig.cmake.in ${CMAKE_BINARY_DIR}/brisolanConfig.cmake
    INSTALL_DESTINATION ${package} NO_SET_AND_CHECK_MACRO)
# Before version 1 the second number is the one that tells of breaches.
write_basic_package_version_file(${CMAKE_BINARY_DIR}/brisolanConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/brisolanConfig.cmake ${CMAKE_BINARY_DIR}/brisolanConfigVersion.cmake
    DESTINATION ${package} COMPONENT sdk)
# An install can be moved: pkg-config finds the rest from where the file lies.
file(RELATIVE_PATH BRISOLAN_PREFIX_FROM_PKGCONFIG /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" BRISOLAN_PREFIX_FROM_PKGCONFIG "${BRISOLAN_PREFIX_FROM_PKGCONFIG}")
foreach(name brisolan brisolan-interfaces)
    configure_file(${packaging}/sdk/${name}.pc.in ${CMAKE_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${CMAKE_BINARY_DIR}/${name}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT sdk)
endforeach()

# The Debian packages: brisolan and brisolan-dev.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME brisolan)
set(CPACK_PACKAGE_VENDOR "the brisolan authors")
set(CPACK_PACKAGE_CONTACT "the brisolan authors <brisolan@localhost>" CACHE STRING "The Debian packages' maintainer")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL program sdk)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME brisolan)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
if(BRISOLAN_HAVE_FLUIDSYNTH)
    # Loaded only when sound is asked for, so that dpkg-shlibdeps does not see it. Debian names it after the file.
    get_filename_component(synth ${FLUIDSYNTH_LIBRARY} REALPATH)
    string(REGEX REPLACE ".*lib([a-z]+)\\.so\\.([0-9]+).*" "lib\\1\\2" synth "${synth}")
    set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS ${synth})
endif()
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "timgm6mb-soundfont | fluid-soundfont-gm")
if(BRISOLAN_HAVE_QT)
    string(APPEND CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS ", qt6-wayland")
endif()
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "It holds a sequence of notes, plays it in time to MIDI ports or a synth,
records, follows a live performer with an accompaniment, and edits it. It reads
and writes MIDI files and documents, runs patches of boxes and cords, and does
all of it from the command line as well.")
set(CPACK_DEBIAN_SDK_PACKAGE_NAME brisolan-dev)
set(CPACK_DEBIAN_SDK_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_SDK_PACKAGE_DEPENDS libstdc++-12-dev)
set(CPACK_DEBIAN_SDK_DESCRIPTION "This is the object as a static library for other hosts, with the two headers that
a host implements to carry it, and what CMake and pkg-config need.")
include(CPack)

# The tests of all this (tests/packaging/). They install from the build, so they want all of it built.
if(NOT BRISOLAN_TESTS)
    return()
endif()
set(tests ${CMAKE_SOURCE_DIR}/tests/packaging)
add_test(NAME packaging/install COMMAND ${tests}/install.sh ${CMAKE_BINARY_DIR} ${CMAKE_COMMAND} ${CMAKE_SOURCE_DIR})
add_test(NAME packaging/consumer
    COMMAND ${tests}/consumer.sh ${CMAKE_BINARY_DIR} ${CMAKE_COMMAND} ${CMAKE_CXX_COMPILER})
add_test(NAME packaging/reference COMMAND ${tests}/reference.sh $<TARGET_FILE:brisolan> ${reference})
add_test(NAME packaging/desktop COMMAND ${tests}/desktop.sh ${packaging} ${CMAKE_BINARY_DIR})
add_test(NAME packaging/deb COMMAND ${tests}/deb.sh ${CMAKE_BINARY_DIR} ${CMAKE_CPACK_COMMAND})
foreach(test install consumer reference desktop deb)
    set_tests_properties(packaging/${test} PROPERTIES
        LABELS packaging TIMEOUT 300 SKIP_REGULAR_EXPRESSION "was not tested:")
endforeach()
