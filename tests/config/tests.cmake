# Real files under names of the test's own choosing: the same on every platform.
set(units ascii_ini away_rules portable_folder setting_keys settings_file settings_noise settings_report
    stored_path)
# These lean on what only Linux lets a test do: move the home folder, drop rights, limit a file's size.
if(NOT WIN32)
    list(APPEND units default_profile first_run_marker folders kept_settings settings_safety)
endif()
kivo_add_tests(config UNITS ${units} LINK kivo_config)
