set(window_units
    away_light
    main_window
    window_accessibility
    window_controls
    window_custom
    window_editing
    window_ground
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
    window_report
    window_rest
    window_sensors
    window_sharing
    window_state
    window_text
    window_themes
    window_tools)
set(units
    fact_log
    nimb_process
    outside_change
    picture_choice
    restore_offer
    screen_watch
    sensor_table
    state_line
    tray
    window_place
    ${window_units})
# What a person pastes into a shell; pipes and full disks.
if(NOT WIN32)
    list(APPEND units access_commands layout_sharing)
endif()
kivo_add_tests(window UNITS ${units} LINK kivo_window kivo_virtualscreen)
add_dependencies(tests_window ${energy_library_targets})
list(TRANSFORM window_units PREPEND window/ OUTPUT_VARIABLE window_tests)
kivo_limit_tests(1200 ${window_tests})

# Once more on scaled screens; in a process of its own, for Qt reads the factor when it starts.
foreach(unit window_legibility window_state)
    foreach(percent 150 200)
        math(EXPR whole "${percent} / 100")
        math(EXPR rest "${percent} % 100")
        set(test window/${unit}_${percent})
        kivo_register_test(${test} ${unit} ENVIRONMENT QT_SCALE_FACTOR=${whole}.${rest})
        kivo_limit_tests(1200 ${test})
    endforeach()
endforeach()
