# What is installed finds itself from where it stands, so that the prefix may be chosen when it is installed, or changed.
if(TARGET ztdecode)
    install(TARGETS ztdecode EXPORT ztdecode LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(FILES
        ${PROJECT_SOURCE_DIR}/include/ztdecode.h
        ${PROJECT_SOURCE_DIR}/include/ztdecode_session.h
        ${PROJECT_SOURCE_DIR}/include/ztdecode.hpp
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

    # For pkg-config: the way from the folder of its file to the prefix.
    if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
        set(pc_prefix ${CMAKE_INSTALL_PREFIX})
    else()
        file(RELATIVE_PATH pc_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
        string(REGEX REPLACE "/$" "" pc_prefix "\${pcfiledir}/${pc_prefix}")
    endif()
    cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "\${prefix}" OUTPUT_VARIABLE pc_libdir)
    cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_INCLUDEDIR BASE_DIRECTORY "\${prefix}" OUTPUT_VARIABLE pc_includedir)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/ztdecode.pc.in ${PROJECT_BINARY_DIR}/ztdecode.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/ztdecode.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

    # For CMake: find_package(ztdecode) gives the target ztdecode::ztdecode.
    include(CMakePackageConfigHelpers)
    set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/ztdecode)
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/ztdecode-config-version.cmake
        COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/ztdecode-config-version.cmake DESTINATION ${package_folder})
    install(EXPORT ztdecode FILE ztdecode-config.cmake NAMESPACE ztdecode:: DESTINATION ${package_folder})
endif()

if(TARGET ztdecode_tool)
    install(TARGETS ztdecode_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

if(EXISTS ${PROJECT_SOURCE_DIR}/docs/ztdecode.1)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/ztdecode.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
