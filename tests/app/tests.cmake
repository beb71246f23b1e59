kivo_add_test(app autostart LINK kivo_app)
if(NOT WIN32)
    kivo_add_test(app autostart_entry LINK kivo_app)
endif()
kivo_add_test(app command_line LINK kivo_app)
kivo_add_test(app tray LINK kivo_app)
kivo_add_test(app refresh_data_thread LINK kivo_app kivo_virtualscreen)
kivo_add_test(app live_session LINK kivo_app kivo_virtualscreen)
kivo_add_test(app live_session_uploads LINK kivo_app kivo_virtualscreen)
kivo_add_test(app screen_answers LINK kivo_app kivo_virtualscreen)
kivo_add_test(app nimb_process LINK kivo_app kivo_virtualscreen)
kivo_add_test(app sleep_watch LINK kivo_app)
# One of several copies of the program.
kivo_platform_sources(become_nobody app/become_nobody)
kivo_add_program(instance_copy SOURCES app/instance_copy.cpp ${become_nobody} LINK kivo_app)
set_target_properties(instance_copy PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)

kivo_add_test(app instance_answers LINK kivo_app)
add_dependencies(tst_instance_answers instance_copy)
target_compile_definitions(tst_instance_answers PRIVATE KIVO_INSTANCE_COPY="$<TARGET_FILE:instance_copy>")

# Signals, homes without rights, the system's table of shared memory: as Linux has them. Windows has tests of its own for
# the program as a process.
if(NOT WIN32)
    kivo_add_test(app program LINK kivo_app kivo_virtualscreen TIMEOUT 180)
    add_dependencies(tst_program kivo-screen)
    target_compile_definitions(tst_program PRIVATE KIVO_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    kivo_add_test(app program_copies LINK kivo_app TIMEOUT 180)
    add_dependencies(tst_program_copies kivo-screen)
    target_compile_definitions(tst_program_copies PRIVATE KIVO_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    kivo_use_energy_libraries(tst_program_copies)
    # Found before the system's own, by its name.
    add_library(test_hidapi SHARED app/libraries/test_hidapi_linux.cpp)
    set_target_properties(test_hidapi PROPERTIES
        AUTOMOC OFF AUTOUIC OFF AUTORCC OFF
        OUTPUT_NAME hidapi-hidraw SUFFIX .so.0
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/hidapi)
    target_include_directories(test_hidapi PRIVATE ${HIDAPI_INCLUDE_DIRS})
    add_dependencies(tst_program_copies test_hidapi)
    target_compile_definitions(tst_program_copies PRIVATE KIVO_TEST_HIDAPI="${CMAKE_BINARY_DIR}/tests/hidapi")
    kivo_add_test(app single_instance LINK kivo_app)
    add_dependencies(tst_single_instance instance_copy)
    target_compile_definitions(tst_single_instance PRIVATE KIVO_INSTANCE_COPY="$<TARGET_FILE:instance_copy>")
endif()
set(window_tests main_window window_custom window_hotplug window_legibility window_life window_likeness window_noise
                 window_picture_list window_sensors window_text window_themes window_tools)
foreach(test ${window_tests})
    kivo_add_test(app ${test} LINK kivo_app kivo_virtualscreen kivo_test_support TIMEOUT 300)
endforeach()
foreach(test live_session live_session_uploads screen_answers ${window_tests})
    add_dependencies(tst_${test} kivo-screen)
    target_compile_definitions(tst_${test} PRIVATE KIVO_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
endforeach()
kivo_use_energy_libraries(tst_window_sensors)

# Once more on scaled screens; in a process of its own, for Qt reads the factor when it starts.
foreach(percent 150 200)
    math(EXPR whole "${percent} / 100")
    math(EXPR rest "${percent} % 100")
    set(name app/window_legibility_${percent})
    add_test(NAME ${name} COMMAND tst_window_legibility)
    get_test_property(app/window_legibility ENVIRONMENT environment)
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300 LABELS app ENVIRONMENT "${environment};QT_SCALE_FACTOR=${whole}.${rest}" RUN_SERIAL ON)
endforeach()
