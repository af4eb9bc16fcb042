# What every target here is compiled with.

set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(ZTDECODE_CCACHE ccache)
mark_as_advanced(ZTDECODE_CCACHE)
if(ZTDECODE_CCACHE)
    foreach(language C CXX)
        if(NOT CMAKE_${language}_COMPILER_LAUNCHER)
            set(CMAKE_${language}_COMPILER_LAUNCHER ${ZTDECODE_CCACHE})
        endif()
    endforeach()
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(ZTDECODE_WERROR)
    add_compile_options(-Werror)
endif()

set(ZTDECODE_SANITIZED OFF)
if(NOT ZTDECODE_SANITIZE)
    # Texts are copied in many small pieces: calls of the C library go straight there.
    add_compile_options(-ffunction-sections -fdata-sections -fno-plt)
endif()
if(ZTDECODE_SANITIZE STREQUAL "address")
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
elseif(ZTDECODE_SANITIZE STREQUAL "thread")
    set(sanitizers -fsanitize=thread)
elseif(ZTDECODE_SANITIZE)
    message(FATAL_ERROR "ZTDECODE_SANITIZE is \"${ZTDECODE_SANITIZE}\": address, thread or nothing is known")
endif()
if(ZTDECODE_SANITIZE)
    set(ZTDECODE_SANITIZED ON)
    add_compile_options(${sanitizers} -fno-omit-frame-pointer -g)
    add_link_options(${sanitizers})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # The instrumentation itself sets these off, with nothing wrong in the source.
        add_compile_options(-Wno-error=maybe-uninitialized -Wno-error=stringop-overflow
            -Wno-error=stringop-overread -Wno-error=array-bounds -Wno-error=restrict)
    endif()
endif()

if(ZTDECODE_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "ZTDECODE_FUZZ needs clang")
    endif()
    add_compile_options(-fsanitize=fuzzer-no-link)
    add_link_options(-fsanitize=fuzzer-no-link)
endif()

# Header-only libraries. The paths are looked up by hand: the packages' own CMake files refuse a 32-bit build.
find_path(ZTDECODE_FMT_INCLUDE fmt/compile.h REQUIRED)
mark_as_advanced(ZTDECODE_FMT_INCLUDE)
add_library(ztdecode_fmt INTERFACE)
# clang 14 can do compile-time formats ("..."_cf), but {fmt} does not know that unless it is told.
target_compile_definitions(ztdecode_fmt INTERFACE FMT_HEADER_ONLY=1 FMT_USE_NONTYPE_TEMPLATE_ARGS=1)
