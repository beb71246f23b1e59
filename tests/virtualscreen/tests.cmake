kivo_add_tests(virtualscreen
    UNITS
        panel_decoder
        panel_image_writer
        report_log_program
        round_trip
        virtual_hid_api
        virtual_hotplug
        virtual_screen_window
    LINK kivo_virtualscreen kivo_virtualscreen_window kivo_device)
add_dependencies(tests_virtualscreen kivo-report-log)
