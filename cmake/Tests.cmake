find_package(GTest REQUIRED)
find_package(nlohmann_json REQUIRED)
include(GoogleTest)

# What nearly every test includes is compiled once for all of them. That fits only what is compiled alike, so all of
# it is compiled for programs, and with threads, as most of the libraries here ask for.
function(fcp_compile_alike target)
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${target} PRIVATE -fPIE -pthread)
endfunction()

# fcp_test_headers(NAME HEADERS... [LIBRARIES...])
function(fcp_test_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LIBRARIES")
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp CONTENT "")
    add_library(${name} OBJECT EXCLUDE_FROM_ALL ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
    fcp_warnings(${name})
    fcp_compile_alike(${name})
    target_link_libraries(${name} PRIVATE GTest::gtest nlohmann_json::nlohmann_json ${arg_LIBRARIES})
    target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <nlohmann/json.hpp> <chrono> <filesystem> <fstream>
        <functional> <memory> <string> <vector> ${arg_HEADERS})
endfunction()

fcp_test_headers(fcp_plain_test_headers)
if(TARGET PkgConfig::WEBKIT)
    pkg_check_modules(GTKMM REQUIRED IMPORTED_TARGET GLOBAL gtkmm-4.0)
    fcp_test_headers(fcp_toolkit_test_headers HEADERS <gtkmm.h> <webkit/webkit.h>
        LIBRARIES PkgConfig::GTKMM PkgConfig::WEBKIT)
endif()

# fcp_test_library(NAME SOURCES... [LIBRARIES...] [TOOLKIT]): what several test programs share.
function(fcp_test_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "TOOLKIT" "" "SOURCES;LIBRARIES")
    add_library(${name} STATIC ${arg_SOURCES})
    fcp_warnings(${name})
    fcp_compile_alike(${name})
    fcp_reuse_test_headers(${name} ${arg_TOOLKIT})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PUBLIC ${arg_LIBRARIES} GTest::gtest)
endfunction()

function(fcp_reuse_test_headers target toolkit)
    if(toolkit)
        target_precompile_headers(${target} REUSE_FROM fcp_toolkit_test_headers)
    else()
        target_precompile_headers(${target} REUSE_FROM fcp_plain_test_headers)
    endif()
endfunction()

# Builds what thread checking runs, and nothing that uses a toolkit.
add_custom_target(plain-tests)

# fcp_add_test(NAME SOURCES... [LIBRARIES...] [TOOLKIT] [SESSION | UNDER script] [LOCKS name...] [LABELS name...]
#     [TIMEOUT seconds] [WHOLE_STACKS])
#
# One test program; TOOLKIT when it includes the toolkit or the web engine. With SESSION it runs under a private session
# bus, display, home and runtime folder (tests/with-session), with UNDER under another script that takes the command.
# LOCKS names what belongs to the whole machine: "markers" for the marker files in /tmp, "port3000". The label "long"
# keeps a test out of ./test and in ./test --long; "plain" marks what uses no toolkit and is therefore also run with
# thread checking.
#
# WHOLE_STACKS is for programs that show so much of the toolkit that GLib's first table of names is too small and left
# behind, or nearly so (2,048 names; tests/leaks.supp), and for such as open dialogs: only a whole stack tells who
# allocated what these leave. Recording those takes more than twice the time.
function(fcp_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "SESSION;OWN_MAIN;TOOLKIT;WHOLE_STACKS" "TIMEOUT;UNDER" "SOURCES;LIBRARIES;LOCKS;LABELS")
    add_executable(${name} ${arg_SOURCES})
    fcp_warnings(${name})
    fcp_compile_alike(${name})
    fcp_reuse_test_headers(${name} ${arg_TOOLKIT})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} GTest::gtest)
    if(NOT arg_OWN_MAIN)
        target_link_libraries(${name} PRIVATE GTest::gtest_main)
    endif()
    set(command $<TARGET_FILE:${name}>)
    if(arg_SESSION)
        list(PREPEND command ${PROJECT_SOURCE_DIR}/tests/with-session)
    endif()
    add_test(NAME ${name} COMMAND ${arg_UNDER} ${command})
    if("plain" IN_LIST arg_LABELS)
        add_dependencies(plain-tests ${name})
    endif()
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS "${arg_LABELS}" RESOURCE_LOCK "${arg_LOCKS}"
        ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0")
    if(arg_WHOLE_STACKS)
        set_tests_properties(${name} PROPERTIES
            ENVIRONMENT_MODIFICATION "ASAN_OPTIONS=string_append::fast_unwind_on_malloc=0")
    endif()
endfunction()
