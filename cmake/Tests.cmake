find_package(GTest REQUIRED)
find_package(nlohmann_json REQUIRED)
include(GoogleTest)

# Builds what thread checking runs, and nothing that uses a toolkit.
add_custom_target(plain-tests)

# fcp_add_test(NAME SOURCES... [LIBRARIES...] [SESSION] [LOCKS name...] [LABELS name...] [TIMEOUT seconds])
#
# One test program. With SESSION it runs under a private session bus, display, home and runtime folder
# (tests/with-session). LOCKS names what belongs to the whole machine: "markers" for the marker files in /tmp,
# "port3000". The label "long" keeps a test out of ./test and in ./test --long; "plain" marks what uses no
# toolkit and is therefore also run with thread checking.
function(fcp_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SESSION;OWN_MAIN" "TIMEOUT" "SOURCES;LIBRARIES;LOCKS;LABELS")
    add_executable(${name} ${arg_SOURCES})
    fcp_warnings(${name})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest)
    if(NOT arg_OWN_MAIN)
        target_link_libraries(${name} PRIVATE GTest::gtest_main)
    endif()
    set(command $<TARGET_FILE:${name}>)
    if(arg_SESSION)
        list(PREPEND command ${PROJECT_SOURCE_DIR}/tests/with-session)
    endif()
    add_test(NAME ${name} COMMAND ${command})
    if("plain" IN_LIST arg_LABELS)
        add_dependencies(plain-tests ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}" RESOURCE_LOCK "${arg_LOCKS}"
        ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")
endfunction()
