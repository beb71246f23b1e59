set(units picture_cards picture_copy picture_decoder picture_list picture_list_view picture_name picture_name_edit picture_names
    picture_reader picture_shelf picture_source picture_storm picture_threads stored_pictures thumbnail_cache
    thumbnail_picture)
if(NOT WIN32)
    list(APPEND units thumbnail_folder)
endif()
kivo_add_tests(pictures UNITS ${units} LINK kivo_pictures)
