set(window_units
    main_window
    window_accessibility
    window_custom
    window_editing
    window_hotplug
    window_legibility
    window_life
    window_likeness
    window_noise
    window_outside
    window_picture_list
    window_picture_names
    window_picture_looks
    window_pictures
    window_rest
    window_sensors
    window_state
    window_text
    window_themes
    window_tools)
set(units
    autostart
    command_line
    instance_answers
    live_session
    live_session_uploads
    nimb_process
    outside_commands
    outside_control
    picture_choice
    restore_offer
    screen_answers
    sensor_table
    session_after_session
    state_line
    tray
    window_place
    ${window_units})
# Signals, homes without rights, the system's table of shared memory: as Linux has them. Windows has tests of its own for
# the program as a process.
if(NOT WIN32)
    list(APPEND units access_commands autostart_entry outside_place program program_copies program_outside
        single_instance)
endif()
kivo_add_tests(app UNITS ${units} LINK kivo_app kivo_virtualscreen)
list(TRANSFORM window_units PREPEND app/ OUTPUT_VARIABLE window_tests)
kivo_limit_tests(1200 ${window_tests})

# One of several copies of the program.
kivo_platform_sources(become_nobody app/become_nobody)
kivo_add_program(instance_copy SOURCES app/instance_copy.cpp ${become_nobody} LINK kivo_app)
set_target_properties(instance_copy PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
add_dependencies(tests_app kivo-screen instance_copy ${energy_library_targets})
if(NOT WIN32)
    # Found before the system's own, by its name.
    add_library(test_hidapi SHARED app/libraries/test_hidapi_linux.cpp)
    set_target_properties(test_hidapi PROPERTIES
        AUTOMOC OFF AUTOUIC OFF AUTORCC OFF
        OUTPUT_NAME hidapi-hidraw SUFFIX .so.0
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/hidapi)
    target_include_directories(test_hidapi PRIVATE ${HIDAPI_INCLUDE_DIRS})
    add_dependencies(tests_app test_hidapi)
endif()

# Once more on scaled screens; in a process of its own, for Qt reads the factor when it starts.
foreach(unit window_legibility window_state)
    foreach(percent 150 200)
        math(EXPR whole "${percent} / 100")
        math(EXPR rest "${percent} % 100")
        set(test app/${unit}_${percent})
        kivo_register_test(${test} ${unit} ENVIRONMENT QT_SCALE_FACTOR=${whole}.${rest})
        kivo_limit_tests(1200 ${test})
    endforeach()
endforeach()
