kivo_add_test(resources window_pictures LINK kivo_resources Qt5::Gui)
add_dependencies(tst_window_pictures kivo_defaults)
target_compile_definitions(tst_window_pictures PRIVATE
    KIVO_PROGRAM_FOLDER="$<SHELL_PATH:${CMAKE_RUNTIME_OUTPUT_DIRECTORY}>")
