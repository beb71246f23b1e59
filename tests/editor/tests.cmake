kivo_add_tests(editor
    UNITS
        color_bar
        custom_layout_rules
        device_frame
        drag_tool
        drag_tool_text
        edit_bar
        edit_history
        editor_tools
        layout_editor
        layout_editor_saving
    layout_editor_steps
        preview_accessibility
        screen_mapping
        trim_frame
        trim_tool
        typed_text
        zoom_widget_preview
        zoom_widget_slots
        zoom_widget_state
        zoom_widget_text
        zoom_widget_trim
    LINK kivo_editor)
# Some of them look at captions, which come from the compiled translations.
add_dependencies(tests_editor kivo_languages)
