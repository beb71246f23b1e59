kivo_add_tests(resources UNITS window_pictures LINK kivo_resources Qt5::Gui)
add_dependencies(tests_resources kivo_defaults)
