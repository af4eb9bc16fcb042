# The preset web: the sessions as WebAssembly, and around them a module for JavaScript, as an npm package.

if(NOT EMSCRIPTEN)
    return()
endif()

# The functions that web/module calls.
set(exports _malloc _free)
foreach(function version status_text session_create session_destroy session_set_options feed_line next_message decode
        field_at word_at part_at segment_at outcome_name kind_name sensitivity_name refusal_name)
    list(APPEND exports _zt_${function})
endforeach()
list(JOIN exports "," exports)

file(WRITE ${PROJECT_BINARY_DIR}/empty.cpp "")
add_executable(decoder ${PROJECT_BINARY_DIR}/empty.cpp $<TARGET_OBJECTS:ztdecode_api>)
target_link_libraries(decoder PRIVATE ztdecode_core)
set_target_properties(decoder PROPERTIES SUFFIX .mjs RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/package)
# Messages that carry each other need most of a MiB of stack.
target_link_options(decoder PRIVATE -O2 -fwasm-exceptions --no-entry -sMODULARIZE -sEXPORT_ES6 -sSINGLE_FILE -sUSE_ES6_IMPORT_META=0
    -sENVIRONMENT=web,worker,node -sALLOW_MEMORY_GROWTH -sTOTAL_STACK=2097152 -sFILESYSTEM=0
    -sEXPORTED_FUNCTIONS=${exports})

set(module ${PROJECT_SOURCE_DIR}/web/module)
configure_file(${module}/package.json.in ${PROJECT_BINARY_DIR}/package/package.json @ONLY)
foreach(file ztdecode.mjs ztdecode.d.mts README.md)
    configure_file(${module}/${file} ${PROJECT_BINARY_DIR}/package/${file} COPYONLY)
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_BINARY_DIR}/package/LICENSE COPYONLY)
