# Which Qt the program is built with: KIVO_QT is its major version. The sources are the same for both.
set(kivo_oldest_qt_5 5.15)
set(kivo_oldest_qt_6 6.4)
if(NOT DEFINED kivo_oldest_qt_${KIVO_QT})
    message(FATAL_ERROR "KIVO_QT is \"${KIVO_QT}\". Kivo Screen is built with Qt 5 or with Qt 6.")
endif()
# What Qt::Core, qt_add_translation and the like stand for.
set(QT_DEFAULT_MAJOR_VERSION ${KIVO_QT})

# kivo_find_qt(COMPONENT...)
macro(kivo_find_qt)
    find_package(Qt${KIVO_QT} ${kivo_oldest_qt_${KIVO_QT}} REQUIRED COMPONENTS ${ARGN})
endmacro()

# To read Qt's headers is nearly all the time that moc takes, and they change nothing in what it writes but, with Qt 6, an
# include of theirs: it gets the project's own folders only.
function(kivo_spare_moc_the_headers)
    if(NOT CMAKE_HOST_UNIX)
        return() # there is no shell for the script
    endif()
    get_target_property(KIVO_MOC Qt${KIVO_QT}::moc LOCATION)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/moc.sh.in ${CMAKE_BINARY_DIR}/moc.sh @ONLY
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    set_target_properties(Qt${KIVO_QT}::moc PROPERTIES IMPORTED_LOCATION ${CMAKE_BINARY_DIR}/moc.sh)
endfunction()
