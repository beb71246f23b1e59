function(kivo_add_editor_test unit)
    kivo_add_test(editor ${unit} LINK kivo_editor)
    add_dependencies(tst_${unit} kivo_languages)
    target_include_directories(tst_${unit} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(tst_${unit} PRIVATE
        KIVO_LANGUAGE_FOLDER="$<SHELL_PATH:${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/lang>")
endfunction()

kivo_add_editor_test(custom_layout_rules)
kivo_add_editor_test(edit_history)
kivo_add_editor_test(screen_mapping)
kivo_add_editor_test(trim_frame)
