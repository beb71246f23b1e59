kivo_add_test(pictures stored_pictures LINK kivo_pictures)
kivo_add_test(pictures thumbnail_cache LINK kivo_pictures)
kivo_add_test(pictures thumbnail_picture LINK kivo_pictures)
kivo_add_test(pictures thumbnails LINK kivo_pictures)
