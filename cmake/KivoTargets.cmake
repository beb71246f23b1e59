# Warnings, Qt strictness and sanitizers stand in one INTERFACE target that every target of the project links.
add_library(kivo_build_flags INTERFACE)
target_compile_options(kivo_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
    -Wconversion -Wno-sign-conversion -Wdouble-promotion -Wformat=2 -Wimplicit-fallthrough)
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

# Where the program is built as people get it, its tests are not: to make their own code fast takes longer than it saves.
add_library(kivo_test_flags INTERFACE)
target_link_libraries(kivo_test_flags INTERFACE kivo_build_flags Qt5::Test)
target_compile_options(kivo_test_flags INTERFACE $<$<CONFIG:Release>:-O0>)

# <QtTest>, which is half of what a test's compiler reads, compiled once for each set of Qt's modules that tests link:
# gives the name of the target that has it for a test which links these libraries.
function(kivo_test_headers out)
    set(libraries "${ARGN}")
    set(seen "")
    while(NOT libraries STREQUAL "")
        list(POP_FRONT libraries library)
        if(library IN_LIST seen OR NOT TARGET ${library})
            continue()
        endif()
        list(APPEND seen ${library})
        get_target_property(next ${library} INTERFACE_LINK_LIBRARIES)
        if(next)
            list(APPEND libraries ${next})
        endif()
    endwhile()
    set(name kivo_test_headers)
    set(qt "")
    foreach(module Gui Widgets)
        if(Qt5::${module} IN_LIST seen)
            string(APPEND name _${module})
            list(APPEND qt Qt5::${module})
        endif()
    endforeach()
    if(NOT TARGET ${name})
        file(WRITE ${CMAKE_BINARY_DIR}/${name}.cpp "")
        add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
        target_link_libraries(${name} PRIVATE kivo_test_flags ${qt})
        target_precompile_headers(${name} PRIVATE <QtTest>)
    endif()
    set(${out} ${name} PARENT_SCOPE)
endfunction()

# kivo_add_test(<folder> <unit> LINK ...): tests/<folder>/tst_<unit>.cpp, run on Qt's offscreen platform in a home
# of its own, so that no test ever sees the settings of the person who runs it. Its folder for temporary files is
# its own too: running copies of the program find each other through it.
function(kivo_add_test folder unit)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 120)
    endif()
    set(platform offscreen)
    set(fonts "")
    if(WIN32)
        # What is drawn on the panel is drawn with the system's fonts; the window's tests are about behaviour, and true
        # windows make them five times as slow. The offscreen platform has to be told where fonts lie.
        if(folder STREQUAL compose OR folder STREQUAL windows)
            set(platform windows)
        elseif(CMAKE_CROSSCOMPILING)
            set(fonts ";QT_QPA_FONTDIR=/usr/share/fonts/opentype/noto")
        endif()
    endif()
    set(name tst_${unit})
    add_executable(${name} ${folder}/${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE kivo_test_flags ${arg_LINK})
    kivo_test_headers(headers ${arg_LINK})
    target_precompile_headers(${name} REUSE_FROM ${headers})
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/mocs_compilation.cpp
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${folder}/${unit} COMMAND ${name})
    set(home ${CMAKE_BINARY_DIR}/test-home/${name})
    file(MAKE_DIRECTORY ${home})
    file(CHMOD ${home} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)  # it is the runtime folder too
    set(temporary ${CMAKE_BINARY_DIR}/test-tmp/${name})
    file(MAKE_DIRECTORY ${temporary})
    # Those that may take longest begin first, and the short ones fill the gaps.
    set_tests_properties(${folder}/${unit} PROPERTIES
        TIMEOUT ${arg_TIMEOUT} COST ${arg_TIMEOUT} LABELS ${folder}
        ENVIRONMENT "QT_QPA_PLATFORM=${platform};HOME=${home};TMPDIR=${temporary};XDG_CONFIG_HOME=${home}/.config;XDG_DATA_HOME=${home}/.local/share;XDG_CACHE_HOME=${home}/.cache;XDG_RUNTIME_DIR=${home};LC_ALL=C.UTF-8${fonts}")
endfunction()
