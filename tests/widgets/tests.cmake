kivo_add_tests(widgets
    UNITS
        exit_item_delegate
        exit_message_box
        focus_ring
        kit_accessibility
        my_list_widget
        nimb_item_delegate
        nimb_push_button
        percent_slider
        press_combobox
        press_label
        self_plain_text_edit
        sharp_picture
        window_style
    LINK kivo_widgets kivo_resources)
