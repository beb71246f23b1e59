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
