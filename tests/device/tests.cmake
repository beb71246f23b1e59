set(units
    hanging_open
    hanging_write
    hid_api_hidapi
    interface_name
    panel_key
    panel_node
    report_descriptor
    report_log
    reports
    screen_change
    screen_device_table
    screen_session
    transfer_faults
    transfer_threads
    transfers
    udev_event)
if(WIN32)
    set(elsewhere hid_api_hidapi)  # windows/tests.cmake
else()
    set(elsewhere "")
    list(APPEND units hid_node_list_linux hidraw_sysfs_linux hotplug_linux node_access_linux node_identity_linux
        report_log_linux)
endif()
kivo_add_tests(device
    UNITS ${units}
    REGISTERED_ELSEWHERE ${elsewhere}
    LINK kivo_device kivo_virtualscreen)
