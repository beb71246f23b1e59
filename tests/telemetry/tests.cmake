set(units
    core_temp_source
    cpu_counter
    cpu_usage_sampler
    energy_library
    energy_meter_counters
    energy_meter_devices
    firmware_zone_counters
    hardware_monitor_source
    hwinfo_source
    measured_text
    memory_load
    metric_snapshot
    package_sensors
    power_poller
    sensor_noise
    sleep_watch
    source_chooser
    system_clocks
    thermal_zone
    value_texts)
if(WIN32)
    set(elsewhere cpu_counter)  # windows/tests.cmake
    list(APPEND units energy_library_windows thermal_client)
else()
    set(elsewhere "")
    list(APPEND units linux_machines local_time sysfs_sources sysfs_thermal_zone)
endif()
kivo_add_tests(telemetry UNITS ${units} REGISTERED_ELSEWHERE ${elsewhere} LINK kivo_telemetry)
if(WIN32)
    target_link_libraries(tests_telemetry PRIVATE advapi32)
endif()

# Made-up energy libraries, each in a folder of its own, all under the name that the program looks for. Without
# sanitizers: they are strangers.
set(KIVO_ENERGY_LIBRARIES ${CMAKE_BINARY_DIR}/tests/energy_libraries)
foreach(variant complete hot start_fails calls_fail calls_hang fails_later no_number stop_log_missing)
    set(target energy_library_${variant})
    set(folder ${CMAKE_CURRENT_SOURCE_DIR}/telemetry/energy_libraries)
    if(variant STREQUAL stop_log_missing)
        add_library(${target} SHARED ${folder}/energy_library.cpp ${folder}/complete.cpp)
    else()
        add_library(${target} SHARED ${folder}/energy_library.cpp ${folder}/${variant}.cpp ${folder}/stop_log.cpp)
    endif()
    set_target_properties(${target} PROPERTIES
        AUTOMOC OFF AUTOUIC OFF AUTORCC OFF
        PREFIX "" OUTPUT_NAME EnergyLib64 SUFFIX .dll
        CXX_VISIBILITY_PRESET hidden
        LIBRARY_OUTPUT_DIRECTORY ${KIVO_ENERGY_LIBRARIES}/${variant}
        RUNTIME_OUTPUT_DIRECTORY ${KIVO_ENERGY_LIBRARIES}/${variant}
        ARCHIVE_OUTPUT_DIRECTORY ${KIVO_ENERGY_LIBRARIES}/${variant})
    if(WIN32)
        target_link_options(${target} PRIVATE -static)  # they have to stand alone in their folders
    endif()
    list(APPEND energy_library_targets ${target})
endforeach()
add_dependencies(tests_telemetry ${energy_library_targets})

kivo_add_program(thermal_stand_in SOURCES telemetry/thermal_stand_in.cpp)
set_target_properties(thermal_stand_in PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
add_dependencies(tests_telemetry thermal_stand_in)
if(WIN32)
    # The WMI client's name, in a folder with a blank in it.
    kivo_add_program(wmic_stand_in SOURCES telemetry/wmic_stand_in.cpp)
    set_target_properties(wmic_stand_in PROPERTIES OUTPUT_NAME wmic
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/stand in")
    add_dependencies(tests_telemetry wmic_stand_in)
endif()
