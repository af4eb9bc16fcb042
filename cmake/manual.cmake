# The manual pages: every docs/man/NAME.SECTION.scd, made with what they are of, so that installing finds them.

set(ZTDECODE_MANUAL_PAGES)
find_program(ZTDECODE_SCDOC scdoc)
mark_as_advanced(ZTDECODE_SCDOC)
if(NOT ZTDECODE_SCDOC)
    message(STATUS "No scdoc: manual pages are neither made nor installed")
    return()
endif()

set(pages_script ${PROJECT_SOURCE_DIR}/scripts/man-page)
file(GLOB page_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/*.scd)
foreach(source ${page_sources})
    get_filename_component(page ${source} NAME_WLE)
    set(made ${PROJECT_BINARY_DIR}/man/${page})
    add_custom_command(OUTPUT ${made}
        COMMAND ${pages_script} ${source} ${PROJECT_VERSION} > ${made}.scd
        COMMAND ${ZTDECODE_SCDOC} < ${made}.scd > ${made}
        DEPENDS ${source} ${pages_script} ${PROJECT_SOURCE_DIR}/docs/fields.md
        VERBATIM)
    list(APPEND ZTDECODE_MANUAL_PAGES ${made})
endforeach()
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/man)

add_custom_target(manual DEPENDS ${ZTDECODE_MANUAL_PAGES})
foreach(target ztdecode ztdecode_tool)
    if(TARGET ${target})
        add_dependencies(${target} manual)
    endif()
endforeach()
