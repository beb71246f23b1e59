# Captions come from the compiled translations, so each program waits for them and is told where they lie.
function(kivo_add_compose_test unit)
    kivo_add_test(compose ${unit} LINK kivo_compose ${ARGN})
    add_dependencies(tst_${unit} kivo_languages)
    target_compile_definitions(tst_${unit} PRIVATE
        KIVO_LANGUAGE_FOLDER="$<SHELL_PATH:${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/lang>")
endfunction()

# The same program once more with another family in the place of "Microsoft YaHei". A process of its own, because Qt
# keeps the fonts that it has once found for a family.
function(kivo_repeat_with_font unit label family)
    add_test(NAME compose/${unit}_${label} COMMAND tst_${unit})
    get_test_property(compose/${unit} ENVIRONMENT environment)
    set_tests_properties(compose/${unit}_${label} PROPERTIES
        TIMEOUT 120 LABELS compose ENVIRONMENT "${environment};KIVO_TEST_FONT=${family}")
endfunction()

kivo_add_compose_test(background_picture)
kivo_add_compose_test(background_store)
kivo_add_compose_test(custom_layout)
kivo_add_compose_test(default_files)
target_compile_definitions(tst_default_files PRIVATE
    KIVO_DEFAULTS_FOLDER="${PROJECT_SOURCE_DIR}/resources/defaults")
kivo_add_compose_test(frame_composer)
kivo_add_compose_test(free_text)
kivo_add_compose_test(geometry)
kivo_add_compose_test(item_drawing)
kivo_add_compose_test(live_cuts)
kivo_add_compose_test(live_renderer)
kivo_add_compose_test(live_screen kivo_virtualscreen)
kivo_add_compose_test(panel_looks)
kivo_add_compose_test(panel_text)
kivo_add_compose_test(picture_decoder)
kivo_add_compose_test(resource_use)
target_compile_definitions(tst_resource_use PRIVATE KIVO_SOURCE_FOLDER="${PROJECT_SOURCE_DIR}/src")
kivo_add_compose_test(rgb565)
kivo_add_compose_test(theme_catalogue)
kivo_add_compose_test(theme_state)
kivo_add_compose_test(veil)

foreach(unit free_text item_drawing live_cuts panel_text)
    kivo_repeat_with_font(${unit} dejavu "DejaVu Sans")
    kivo_repeat_with_font(${unit} serif "Noto Serif CJK SC")
    kivo_repeat_with_font(${unit} mono "DejaVu Sans Mono")
endforeach()
