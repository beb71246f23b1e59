# What only Windows has: registry, performance counters, device messages, other programs' windows.
if(NOT WIN32)
    return()
endif()

kivo_add_tests(windows
    UNITS
        autostart_registry
        away_messages
        console_events
        core_temp_mapping
        counter_query
        hidapi_identity
        hwinfo_registry
        instance_guard
        local_page
        native_event
        pdh_counter
        registry_marker
        sensor_lists
        windows_folders
        windows_program
        windows_program_end
    REGISTERED_ELSEWHERE counter_query hidapi_identity pdh_counter windows_program windows_program_end
    LINK kivo_command_line kivo_virtualscreen)
target_sources(tests_windows PRIVATE windows/windows_program.cpp)
target_link_libraries(tests_windows PRIVATE ole32 setupapi shell32 uuid ws2_32)
add_dependencies(tests_windows kivo-screen instance_copy thermal_stand_in)

# For packaging/windows/check_installer.sh. It runs without the folder of libraries.
kivo_add_program(window_stand_in SOURCES windows/window_stand_in.cpp)
target_link_options(window_stand_in PRIVATE -municode -static)
set_target_properties(window_stand_in PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)

# Libraries that stand in for the system's or the user's, each under the name the program looks for, and beside copies of
# the test programs (<folder>...): a library is looked for beside the program first.
function(kivo_add_test_library target name)
    add_library(${target} SHARED windows/libraries/${target}.cpp)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name}
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/libraries)
    target_link_libraries(${target} PRIVATE kivo_build_flags)
    foreach(folder IN LISTS ARGN)
        add_dependencies(tests_${folder} ${target})
        add_custom_command(TARGET tests_${folder} POST_BUILD
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/tests/with_${name}
            COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:tests_${folder}> ${CMAKE_BINARY_DIR}/tests/with_${name}
            COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${target}> ${CMAKE_BINARY_DIR}/tests/with_${name})
    endforeach()
endfunction()
kivo_add_test_library(test_pdh pdh windows telemetry)
kivo_add_test_library(test_hidapi hidapi device windows)
target_include_directories(test_hidapi PRIVATE ${HIDAPI_INCLUDE_DIRS})
add_dependencies(tests_windows test_hidapi)

# The program's own calls of these libraries, on a system whose own cannot be counted on: Wine's has no such counter, and
# hidapi does not start there.
set(with_pdh ${CMAKE_CROSSCOMPILING_EMULATOR} ${CMAKE_BINARY_DIR}/tests/with_pdh)
set(with_hidapi ${CMAKE_CROSSCOMPILING_EMULATOR} ${CMAKE_BINARY_DIR}/tests/with_hidapi)
# Before the system's library comes the one beside the program.
set(own_pdh WINEDLLOVERRIDES=pdh=n,b)
kivo_register_test(windows/pdh_counter pdh_counter COMMAND ${with_pdh}/tests_windows.exe ENVIRONMENT ${own_pdh})
kivo_register_test(windows/counter_query counter_query COMMAND ${with_pdh}/tests_windows.exe ENVIRONMENT ${own_pdh})
kivo_register_test(telemetry/cpu_counter cpu_counter COMMAND ${with_pdh}/tests_telemetry.exe ENVIRONMENT ${own_pdh})
kivo_register_test(device/hid_api_hidapi hid_api_hidapi COMMAND ${with_hidapi}/tests_device.exe)
kivo_register_test(windows/hidapi_identity hidapi_identity COMMAND ${with_hidapi}/tests_windows.exe)
kivo_register_test(windows/windows_program windows_program ENVIRONMENT ${own_pdh})
kivo_register_test(windows/windows_program_end windows_program_end ENVIRONMENT ${own_pdh})
kivo_limit_tests(1200 windows/instance_guard windows/windows_program windows/windows_program_end)
