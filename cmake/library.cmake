# ztdecode_core: the decoders and their ground. ztdecode: the shared object around it.

# The folders of sources: the one list, which is written down for scripts too.
set(core_folders core decode/tables digital digital/options ip he object convert decode/routes decode)
set(tool_folders tool/output tool/input tool/report tool/analysis tool/redact tool/select tool)
set(ZTDECODE_SOURCE_FOLDERS ${core_folders} abi api ${tool_folders})
list(JOIN ZTDECODE_SOURCE_FOLDERS "\n" lines)
file(WRITE ${PROJECT_BINARY_DIR}/source_folders.txt "${lines}\n")

set(core_globs)
foreach(folder ${core_folders})
    list(APPEND core_globs ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
endforeach()
file(GLOB core_sources CONFIGURE_DEPENDS ${core_globs})
file(GLOB abi_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/abi/*.cpp)
file(GLOB api_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/api/*.cpp)

if(EMSCRIPTEN)
    # The catalogue is the command's, and its ranges are more than this standard library has.
    list(REMOVE_ITEM core_sources ${PROJECT_SOURCE_DIR}/decode/catalog.cpp)
    add_compile_options(-fwasm-exceptions -Wno-sign-conversion) # -Wconversion has that here, other than with g++
endif()

add_library(ztdecode_core STATIC ${core_sources})
target_include_directories(ztdecode_core PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
target_link_libraries(ztdecode_core PUBLIC ${CMAKE_DL_LIBS})
set_target_properties(ztdecode_core PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

# What every line of a trace runs through is worth the compiler's best; the decoders gain nothing by it.
set(ZTDECODE_HOT_OPTIONS)
if(NOT ZTDECODE_SANITIZED)
    set(ZTDECODE_HOT_OPTIONS $<$<CONFIG:Release>:-O3>)
endif()
set_source_files_properties(
    ${PROJECT_SOURCE_DIR}/decode/frame.cpp
    ${PROJECT_SOURCE_DIR}/decode/readers.cpp
    ${PROJECT_SOURCE_DIR}/decode/trace_lines.cpp
    PROPERTIES COMPILE_OPTIONS "${ZTDECODE_HOT_OPTIONS}")

if(NOT abi_sources)
    return()
endif()

# The session interface by itself, for programs that take it in.
add_library(ztdecode_api OBJECT ${api_sources})
target_link_libraries(ztdecode_api PUBLIC ztdecode_core)
target_compile_definitions(ztdecode_api PRIVATE ZTDECODE_VERSION="${PROJECT_VERSION}")
set_target_properties(ztdecode_api PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

if(EMSCRIPTEN)
    return() # There is no shared object: web.cmake makes a module.
endif()

add_library(ztdecode SHARED ${abi_sources} $<TARGET_OBJECTS:ztdecode_api>)
add_library(ztdecode::ztdecode ALIAS ztdecode)
target_link_libraries(ztdecode PRIVATE ztdecode_core)
target_include_directories(ztdecode INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
set_target_properties(ztdecode PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)

set(export_map ${PROJECT_SOURCE_DIR}/abi/libztdecode.map)
if(EXISTS ${export_map})
    target_link_options(ztdecode PRIVATE "LINKER:--version-script=${export_map}")
    set_property(TARGET ztdecode APPEND PROPERTY LINK_DEPENDS ${export_map})
endif()

# Functions are bound inside the library; exported data is not, since a host's executable may hold copies of it.
target_link_options(ztdecode PRIVATE LINKER:-Bsymbolic-functions LINKER:--as-needed)
if(NOT ZTDECODE_SANITIZED)
    # With the C++ runtime inside, a host needs the C library alone.
    target_link_options(ztdecode PRIVATE LINKER:-z,defs LINKER:--gc-sections -static-libstdc++ -static-libgcc)
    target_compile_definitions(ztdecode PRIVATE ZTDECODE_STATIC_RUNTIME)
endif()
