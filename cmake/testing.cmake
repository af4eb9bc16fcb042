# GoogleTest from its packaged sources, so that it fits every build (32 bit, sanitizers), and what tests share.

set(ZTDECODE_GOOGLETEST /usr/src/googletest CACHE PATH "GoogleTest's sources")
if(NOT ZTDECODE_FUZZ)
    if(NOT EXISTS ${ZTDECODE_GOOGLETEST}/CMakeLists.txt)
        message(FATAL_ERROR "No GoogleTest in ${ZTDECODE_GOOGLETEST} (scripts/setup installs it; "
            "-DZTDECODE_TESTS=OFF builds without tests)")
    endif()
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(${ZTDECODE_GOOGLETEST} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(target gtest gtest_main gmock gmock_main)
        target_compile_options(${target} PRIVATE -w)
    endforeach()
endif()

set(ZTDECODE_TEST_ENVIRONMENT
    "ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1:detect_leaks=1"
    "UBSAN_OPTIONS=print_stacktrace=1"
    "TSAN_OPTIONS=halt_on_error=1")

# ztdecode_add_test(name command [argument...]): a ctest entry with this build's prefix, environment and time limit.
function(ztdecode_add_test name)
    set(full_name ${ZTDECODE_TEST_PREFIX}${name})
    add_test(NAME ${full_name} COMMAND ${ARGN})
    set_tests_properties(${full_name} PROPERTIES
        ENVIRONMENT "${ZTDECODE_TEST_ENVIRONMENT}"
        TIMEOUT 600)
endfunction()
