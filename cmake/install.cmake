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

foreach(page ${ZTDECODE_MANUAL_PAGES})
    string(REGEX MATCH "[0-9]$" section ${page})
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man${section})
endforeach()

# The Python package, for the interpreter of this machine: the folder's name below the prefix is that of its version.
find_program(ZTDECODE_PYTHON python3)
mark_as_advanced(ZTDECODE_PYTHON)
set(python_folder lib/python3/dist-packages)
if(ZTDECODE_PYTHON)
    execute_process(COMMAND ${ZTDECODE_PYTHON} -c "import sys
kind = 'dist' if any(path.endswith('dist-packages') for path in sys.path) else 'site'
print(f'lib/python{sys.version_info.major}.{sys.version_info.minor}/{kind}-packages')"
        OUTPUT_VARIABLE python_folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
set(ZTDECODE_PYTHON_FOLDER ${python_folder} CACHE STRING "Where below the prefix the Python package is installed")
if(TARGET ztdecode)
    install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/python/ztdecode DESTINATION ${ZTDECODE_PYTHON_FOLDER}
        FILES_MATCHING PATTERN *.py PATTERN py.typed PATTERN __pycache__ EXCLUDE)
endif()

set(ZTDECODE_ZSH_FOLDER ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where below the prefix the completion for zsh is installed")
if(TARGET ztdecode_tool)
    set(completions ${PROJECT_SOURCE_DIR}/completions)
    install(FILES ${completions}/ztdecode.bash RENAME ztdecode
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${completions}/_ztdecode DESTINATION ${ZTDECODE_ZSH_FOLDER})
    install(FILES ${completions}/ztdecode.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
endif()
