# What only Windows has: registry, performance counters, device messages, other programs' windows.
if(NOT WIN32)
    return()
endif()

# Libraries that stand in for the system's or the user's, each under the name the program looks for.
function(kivo_add_test_library target name)
    add_library(${target} SHARED windows/libraries/${target}.cpp)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name}
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/libraries)
    target_link_libraries(${target} PRIVATE kivo_build_flags)
endfunction()
kivo_add_test_library(test_pdh pdh)
kivo_add_test_library(test_hidapi hidapi)
target_include_directories(test_hidapi PRIVATE ${HIDAPI_INCLUDE_DIRS})

kivo_add_test(windows registry_marker LINK kivo_config kivo_test_support)
kivo_add_test(windows autostart_registry LINK kivo_app)
kivo_add_test(windows windows_folders LINK kivo_config kivo_pictures kivo_test_support)
target_link_libraries(tst_windows_folders PRIVATE ole32 shell32 uuid)
kivo_add_test(windows console_events LINK kivo_app)
kivo_add_test(windows native_event LINK kivo_app kivo_virtualscreen kivo_test_support)
add_dependencies(tst_native_event kivo-screen)
target_compile_definitions(tst_native_event PRIVATE KIVO_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
kivo_add_test(windows instance_guard TIMEOUT 300)
add_dependencies(tst_instance_guard instance_copy)
target_compile_definitions(tst_instance_guard PRIVATE KIVO_INSTANCE_COPY="$<TARGET_FILE:instance_copy>")

# For packaging/windows/check_installer.sh. It runs without the folder of libraries.
kivo_add_program(window_stand_in SOURCES windows/window_stand_in.cpp)
target_link_options(window_stand_in PRIVATE -municode -static)
set_target_properties(window_stand_in PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)

# The library is looked for beside the program first, so this one gets a folder of its own.
kivo_add_test(windows pdh_counter LINK kivo_telemetry)
set(with_pdh ${CMAKE_BINARY_DIR}/tests/with_pdh)
set_target_properties(tst_pdh_counter PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${with_pdh})
add_dependencies(tst_pdh_counter test_pdh)
add_custom_command(TARGET test_pdh POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${with_pdh}
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:test_pdh> ${with_pdh}/pdh.dll)

kivo_add_test(windows windows_program LINK kivo_virtualscreen kivo_test_support TIMEOUT 600)
add_dependencies(tst_windows_program kivo-screen test_pdh test_hidapi)
target_compile_definitions(tst_windows_program PRIVATE
    KIVO_PROGRAM_FOLDER="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    KIVO_TEST_LIBRARIES="${CMAKE_BINARY_DIR}/tests/libraries")

# The program's own calls of these libraries, on a system whose own cannot be counted on: Wine's has no such counter, and
# hidapi does not start there.
set(with_hidapi ${CMAKE_BINARY_DIR}/tests/with_hidapi)
set_target_properties(tst_cpu_counter PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${with_pdh})
kivo_add_test(windows hidapi_identity LINK kivo_device)
set_target_properties(tst_hid_api_hidapi tst_hidapi_identity PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${with_hidapi})
add_dependencies(tst_cpu_counter test_pdh)
add_dependencies(tst_hid_api_hidapi test_hidapi)
add_dependencies(tst_hidapi_identity test_hidapi)
add_custom_command(TARGET test_hidapi POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${with_hidapi}
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:test_hidapi> ${with_hidapi}/hidapi.dll)

# Before the system's library comes the one beside the program.
foreach(test windows/pdh_counter windows/windows_program telemetry/cpu_counter)
    get_test_property(${test} ENVIRONMENT environment)
    set_tests_properties(${test} PROPERTIES
        ENVIRONMENT "${environment};WINEDLLOVERRIDES=pdh=n,b")
endforeach()
