# The command. All of it but main.cpp is a library of its own, so that its parts can be tested.

if(NOT ZTDECODE_TOOL)
    return()
endif()

list(TRANSFORM tool_folders PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE tool_globs)
list(TRANSFORM tool_globs APPEND /*.cpp)
file(GLOB tool_sources CONFIGURE_DEPENDS ${tool_globs})
set(tool_main ${PROJECT_SOURCE_DIR}/tool/main.cpp)
if(NOT tool_main IN_LIST tool_sources)
    return()
endif()
list(REMOVE_ITEM tool_sources ${tool_main})

set_source_files_properties(
    ${PROJECT_SOURCE_DIR}/tool/trace.cpp
    ${PROJECT_SOURCE_DIR}/tool/input/lines.cpp
    PROPERTIES COMPILE_OPTIONS "${ZTDECODE_HOT_OPTIONS}")

if(ZTDECODE_SANITIZED)
    # CLI11 is many templates that run once: optimising what the sanitizers add to them takes half a minute.
    file(GLOB command_lines CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tool/*_command.cpp)
    set_source_files_properties(${PROJECT_SOURCE_DIR}/tool/options.cpp ${PROJECT_SOURCE_DIR}/tool/command_line.cpp
        ${command_lines} PROPERTIES COMPILE_OPTIONS -O0)
    # RapidJSON's stack adds to a null pointer before it has room.
    set_source_files_properties(${PROJECT_SOURCE_DIR}/tool/report/ndjson.cpp
        PROPERTIES COMPILE_OPTIONS -fno-sanitize=pointer-overflow)
endif()

# Inside the command as the C++ runtime is: two copies of that, its own and that of a shared RE2, would not do.
find_library(ZTDECODE_SQLITE libsqlite3.a)
find_library(ZTDECODE_RE2 libre2.a)
find_library(ZTDECODE_NETTLE libnettle.a)
find_library(ZTDECODE_ZLIB libz.a)
if(NOT ZTDECODE_SQLITE OR NOT ZTDECODE_RE2 OR NOT ZTDECODE_NETTLE OR NOT ZTDECODE_ZLIB)
    message(FATAL_ERROR "The command needs SQLite, RE2, Nettle and zlib (scripts/setup installs them; "
        "-DZTDECODE_TOOL=OFF builds the library without the command)")
endif()
find_package(Threads REQUIRED)

add_executable(ztdecode_tool ${tool_main})
set_target_properties(ztdecode_tool PROPERTIES OUTPUT_NAME ztdecode)
target_link_libraries(ztdecode_tool PRIVATE ztdecode_core)
if(tool_sources)
    include(cmake/page.cmake)
    add_library(ztdecode_tool_parts STATIC ${tool_sources} ${page_source})
    target_link_libraries(ztdecode_tool_parts PUBLIC
        ztdecode_core ${ZTDECODE_SQLITE} ${ZTDECODE_RE2} ${ZTDECODE_NETTLE} ${ZTDECODE_ZLIB} Threads::Threads m)
    target_compile_definitions(ztdecode_tool_parts PRIVATE ZTDECODE_VERSION="${PROJECT_VERSION}")
    target_link_libraries(ztdecode_tool PRIVATE ztdecode_tool_parts)
endif()

if(NOT ZTDECODE_SANITIZED)
    # Start-up is quicker and memory less with the C++ runtime inside.
    target_link_options(ztdecode_tool PRIVATE LINKER:--gc-sections -static-libstdc++ -static-libgcc)
endif()
