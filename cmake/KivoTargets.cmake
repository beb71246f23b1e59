# Warnings, Qt strictness and sanitizers stand in one INTERFACE target that every target of the project links.
add_library(kivo_build_flags INTERFACE)
target_compile_options(kivo_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
    -Wconversion -Wno-sign-conversion -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
if(KIVO_QT GREATER 5)
    # Qt's sizes are wider than an int there. Where an int is enough, Qt 5's build still sees what narrows one.
    target_compile_options(kivo_build_flags INTERFACE -Wno-conversion)
endif()
if(KIVO_WARNINGS_AS_ERRORS)
    target_compile_options(kivo_build_flags INTERFACE -Werror)
endif()
target_compile_definitions(kivo_build_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_NO_URL_CAST_FROM_STRING QT_STRICT_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
if(WIN32)
    # Else the system's header makes macros of min and max. 1, as libstdc++ defines it too.
    target_compile_definitions(kivo_build_flags INTERFACE NOMINMAX=1)
endif()
if(NOT WIN32 AND NOT KIVO_SANITIZERS)
    # What people run is hardened as a distribution's own programs are. A distribution that builds without a type brings its
    # own flags, and they hold alone.
    set(optimised $<CONFIG:Release,RelWithDebInfo>)
    target_compile_options(kivo_build_flags INTERFACE $<${optimised}:-fstack-protector-strong>)
    target_compile_definitions(kivo_build_flags INTERFACE $<${optimised}:_FORTIFY_SOURCE=2>)
    target_link_options(kivo_build_flags INTERFACE $<${optimised}:-pie> "$<${optimised}:LINKER:-z,relro,-z,now>")
endif()
if(KIVO_SANITIZERS)
    target_compile_options(kivo_build_flags INTERFACE
        -fsanitize=${KIVO_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(kivo_build_flags INTERFACE -fsanitize=${KIVO_SANITIZERS})
endif()

# Names of the form foo_linux.cpp and foo_windows.cpp: the list gets the one of this platform.
function(kivo_platform_sources out)
    set(sources "")
    foreach(stem IN LISTS ARGN)
        if(WIN32)
            list(APPEND sources ${stem}_windows.cpp)
        else()
            list(APPEND sources ${stem}_linux.cpp)
        endif()
    endforeach()
    set(${out} ${sources} PARENT_SCOPE)
endfunction()

# One static library a folder. Headers are included as "folder/file.h".
function(kivo_add_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE kivo_build_flags ${arg_PRIVATE_LINK})
endfunction()

function(kivo_add_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE kivo_build_flags ${arg_LINK})
endfunction()
