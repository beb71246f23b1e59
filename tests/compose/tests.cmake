kivo_add_tests(compose
    UNITS
        accent_contrast
        background_picture
        contrast
        custom_layout
        default_files
        frame_composer
        free_text
        free_text_placing
        frost
        geometry
        glass
        item_drawing
        live_cuts
        live_renderer
        panel_contrast
        panel_looks
        panel_room
        panel_text
        picture_accent
        resource_use
        rgb565
        shared_layout
        theme_catalogue
        theme_state
        value_scale
    LINK kivo_compose kivo_picture_source kivo_virtualscreen)
# Captions come from the compiled translations.
add_dependencies(tests_compose kivo_languages)

# Once more with another family in the place of "Microsoft YaHei". A process of its own, because Qt keeps the fonts that it
# has once found for a family.
foreach(unit free_text free_text_placing item_drawing live_cuts panel_room panel_text value_scale)
    kivo_register_test(compose/${unit}_dejavu ${unit} ENVIRONMENT "KIVO_TEST_FONT=DejaVu Sans")
    kivo_register_test(compose/${unit}_serif ${unit} ENVIRONMENT "KIVO_TEST_FONT=Noto Serif CJK SC")
    kivo_register_test(compose/${unit}_mono ${unit} ENVIRONMENT "KIVO_TEST_FONT=DejaVu Sans Mono")
endforeach()
# And with one of our own that leans, as none of those does.
kivo_register_test(compose/live_cuts_leaning live_cuts ENVIRONMENT "KIVO_TEST_FONT=Kivo Leaning")
