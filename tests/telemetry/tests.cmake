kivo_add_test(telemetry interface_language LINK kivo_telemetry)
kivo_add_test(telemetry cpu_counter LINK kivo_telemetry)
kivo_add_test(telemetry cpu_usage_sampler LINK kivo_telemetry)
kivo_add_test(telemetry memory_load LINK kivo_telemetry)
kivo_add_test(telemetry value_texts LINK kivo_telemetry)
kivo_add_test(telemetry metric_snapshot LINK kivo_telemetry)
kivo_add_test(telemetry msr_driver LINK kivo_telemetry)
if(WIN32)
    kivo_add_test(telemetry msr_driver_windows LINK kivo_telemetry)
    target_link_libraries(tst_msr_driver_windows PRIVATE advapi32)
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

# kivo_use_energy_libraries(<test>...): the tests may load them.
function(kivo_use_energy_libraries)
    foreach(test IN LISTS ARGN)
        add_dependencies(${test} ${energy_library_targets})
        target_compile_definitions(${test} PRIVATE KIVO_ENERGY_LIBRARIES="${KIVO_ENERGY_LIBRARIES}")
    endforeach()
endfunction()

kivo_add_test(telemetry energy_library LINK kivo_telemetry)
kivo_add_test(telemetry power_poller LINK kivo_telemetry)
kivo_use_energy_libraries(tst_energy_library tst_power_poller)
if(WIN32)
    kivo_add_test(telemetry energy_library_windows LINK kivo_telemetry)
    kivo_use_energy_libraries(tst_energy_library_windows)
endif()
kivo_add_test(telemetry thermal_zone LINK kivo_telemetry)
kivo_add_program(thermal_stand_in SOURCES telemetry/thermal_stand_in.cpp)
set_target_properties(thermal_stand_in PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
add_dependencies(tst_thermal_zone thermal_stand_in)
target_compile_definitions(tst_thermal_zone PRIVATE KIVO_THERMAL_STAND_IN="$<TARGET_FILE:thermal_stand_in>")
if(NOT WIN32)
    kivo_add_test(telemetry sysfs_sensors LINK kivo_telemetry)
    kivo_add_test(telemetry sysfs_thermal_zone LINK kivo_telemetry)
    kivo_use_energy_libraries(tst_sysfs_sensors)
else()
    kivo_add_test(telemetry thermal_client LINK kivo_telemetry)
    # The WMI client's name, in a folder with a blank in it.
    kivo_add_program(wmic_stand_in SOURCES telemetry/wmic_stand_in.cpp)
    set_target_properties(wmic_stand_in PROPERTIES OUTPUT_NAME wmic
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/stand in")
    add_dependencies(tst_thermal_client wmic_stand_in)
    target_compile_definitions(tst_thermal_client PRIVATE KIVO_WMIC_STAND_IN="$<TARGET_FILE:wmic_stand_in>")
endif()
