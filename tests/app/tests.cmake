set(window_units
    main_window
    window_custom
    window_hotplug
    window_legibility
    window_life
    window_likeness
    window_noise
    window_picture_list
    window_sensors
    window_text
    window_themes
    window_tools)
set(units
    autostart
    command_line
    live_session
    live_session_uploads
    nimb_process
    refresh_data_thread
    screen_answers
    sleep_watch
    tray
    ${window_units})
# Signals, homes without rights, the system's table of shared memory: as Linux has them. Windows has tests of its own for
# the program as a process.
if(NOT WIN32)
    list(APPEND units autostart_entry program single_instance)
endif()
kivo_add_tests(app UNITS ${units} LINK kivo_app kivo_virtualscreen)
list(TRANSFORM window_units PREPEND app/ OUTPUT_VARIABLE window_tests)
kivo_limit_tests(300 ${window_tests})
if(NOT WIN32)
    kivo_limit_tests(180 app/program)
endif()

# One of several copies of the program.
kivo_platform_sources(become_nobody app/become_nobody)
kivo_add_program(instance_copy SOURCES app/instance_copy.cpp ${become_nobody} LINK kivo_app)
set_target_properties(instance_copy PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
add_dependencies(tests_app kivo-screen instance_copy ${energy_library_targets})

# Once more on scaled screens; in a process of its own, for Qt reads the factor when it starts.
foreach(percent 150 200)
    math(EXPR whole "${percent} / 100")
    math(EXPR rest "${percent} % 100")
    set(test app/window_legibility_${percent})
    kivo_register_test(${test} window_legibility ENVIRONMENT QT_SCALE_FACTOR=${whole}.${rest})
    kivo_limit_tests(300 ${test})
endforeach()
