if(TARGET ztdecode)
    install(TARGETS ztdecode LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(FILES ${PROJECT_SOURCE_DIR}/include/ztdecode.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/ztdecode.pc.in ${PROJECT_BINARY_DIR}/ztdecode.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/ztdecode.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

if(TARGET ztdecode_tool)
    install(TARGETS ztdecode_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

if(EXISTS ${PROJECT_SOURCE_DIR}/docs/ztdecode.1)
    install(FILES ${PROJECT_SOURCE_DIR}/docs/ztdecode.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()
