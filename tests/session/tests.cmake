set(units
    autostart
    instance_answers
    log_file
    log_lines
    outside_commands
    outside_control
    personal_names
    quit_at_once
    support_report)
# Homes without rights, the system's table of shared memory: as Linux has them.
if(NOT WIN32)
    list(APPEND units autostart_entry away_watch display outside_place runtime_folder single_instance)
endif()
kivo_add_tests(session UNITS ${units} LINK kivo_session)
if(NOT WIN32)
    target_sources(tests_session PRIVATE support/private_bus_linux.h)
endif()

# One of several copies of the program.
kivo_platform_sources(become_nobody session/become_nobody)
kivo_add_program(instance_copy SOURCES session/instance_copy.cpp ${become_nobody} LINK kivo_session)
set_target_properties(instance_copy PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
add_dependencies(tests_session instance_copy)
