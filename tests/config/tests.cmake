# Real files under names of the test's own choosing: the same on every platform.
kivo_add_test(config setting_keys LINK kivo_config)
kivo_add_test(config settings_file LINK kivo_config)
kivo_add_test(config settings_noise LINK kivo_config)

# These lean on what only Linux lets a test do: move the home folder, drop rights, limit a file's size.
if(NOT WIN32)
    kivo_add_test(config folders LINK kivo_config)
    kivo_add_test(config first_run_marker LINK kivo_config)
    kivo_add_test(config default_profile LINK kivo_config)
    kivo_add_test(config settings_safety LINK kivo_config)
endif()
