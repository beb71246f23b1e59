set(units command_line)
# Signals and homes without rights, as Linux has them. Windows has tests of its own for the program as a process.
if(NOT WIN32)
    list(APPEND units program program_away program_copies program_outside)
endif()
kivo_add_tests(main UNITS ${units} LINK kivo_command_line kivo_virtualscreen)
add_dependencies(tests_main kivo-screen ${energy_library_targets})
if(NOT WIN32)
    target_sources(tests_main PRIVATE support/private_bus_linux.h)
    target_link_libraries(tests_main PRIVATE Qt::DBus)
    # Found before the system's own, by its name.
    add_library(test_hidapi SHARED main/libraries/test_hidapi_linux.cpp)
    set_target_properties(test_hidapi PROPERTIES
        AUTOMOC OFF AUTOUIC OFF AUTORCC OFF
        OUTPUT_NAME hidapi-hidraw SUFFIX .so.0
        LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/hidapi)
    target_include_directories(test_hidapi PRIVATE ${HIDAPI_INCLUDE_DIRS})
    add_dependencies(tests_main test_hidapi)
endif()
