kivo_add_tests(resources UNITS window_pictures LINK kivo_resources Qt::Gui)
add_dependencies(tests_resources kivo_defaults)
