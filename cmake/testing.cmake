# GoogleTest from its packaged sources, so that it fits every build (32 bit, sanitizers), and what tests share.

set(ZTDECODE_GOOGLETEST /usr/src/googletest CACHE PATH "GoogleTest's sources")
if(NOT ZTDECODE_FUZZ)
    if(NOT EXISTS ${ZTDECODE_GOOGLETEST}/CMakeLists.txt)
        message(FATAL_ERROR "No GoogleTest in ${ZTDECODE_GOOGLETEST} (scripts/setup installs it; "
            "-DZTDECODE_TESTS=OFF builds without tests)")
    endif()
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
    add_subdirectory(${ZTDECODE_GOOGLETEST} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(target gtest gtest_main)
        target_compile_options(${target} PRIVATE -w $<$<CONFIG:Release>:-O0> -fno-sanitize=all)
    endforeach()
endif()

# To find uses of a stack frame whose function has returned, the address sanitizer keeps such frames, and searches them
# all at every throw; an object of a class that does not exist is a throw, and sweeps meet millions of those. So this is
# on for the tests that reach every decoder once, with few frames kept, and off for all others.
set(kept_frames detect_stack_use_after_return=1:max_uar_stack_size_log=16)
set(no_frames detect_stack_use_after_return=0)
set(tests_with_kept_frames "^(golden|decode|carried|contract/decode_traces|fuzz/.*)$")

# They start first, so that the cores end together.
set(long_tests
    "^(carried|contract/sweep|digital|fields|he|object|options|record|script/schema|sessions|tool|tool/report|fuzz/[a-z_]+)$")

# ztdecode_add_test(name command [argument...]): a ctest entry with this build's prefix, environment and time limit.
function(ztdecode_add_test name)
    set(full_name ${ZTDECODE_TEST_PREFIX}${name})
    set(frames ${no_frames})
    if(name MATCHES "${tests_with_kept_frames}")
        set(frames ${kept_frames})
    endif()
    set(environment
        ASAN_OPTIONS=${frames}:strict_string_checks=1:detect_leaks=1
        UBSAN_OPTIONS=print_stacktrace=1
        TSAN_OPTIONS=halt_on_error=1)
    add_test(NAME ${full_name} COMMAND ${ARGN})
    set_tests_properties(${full_name} PROPERTIES ENVIRONMENT "${environment}" TIMEOUT 1200)
    if(name MATCHES "${long_tests}")
        set_tests_properties(${full_name} PROPERTIES COST 100)
    endif()
endfunction()
