kivo_add_tests(model UNITS interface_language item_table theme_table LINK kivo_model)
