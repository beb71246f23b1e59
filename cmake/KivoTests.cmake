# Where the program is built as people get it, its tests are not: to make their own code fast takes longer than it saves.
add_library(kivo_test_flags INTERFACE)
target_link_libraries(kivo_test_flags INTERFACE kivo_build_flags Qt::Test)
target_compile_options(kivo_test_flags INTERFACE $<$<CONFIG:Release>:-O0> $<$<CONFIG:Release>:-U_FORTIFY_SOURCE>)
# Qt's own hands every test the build folder, for looking up test data: nothing here is looked up so, and the objects are
# to be the same in every clone.
set_property(TARGET Qt${KIVO_QT}::Test PROPERTY INTERFACE_COMPILE_DEFINITIONS QT_TESTLIB_LIB)

# <QtTest>, which is half of what a test's compiler reads, compiled once for each set of Qt's modules that tests link:
# gives the name of the target that has it for a test which links these libraries.
function(kivo_precompiled_qttest out)
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
    set(name kivo_qttest)
    set(qt "")
    foreach(module Gui Widgets)
        if(Qt${KIVO_QT}::${module} IN_LIST seen)
            string(APPEND name _${module})
            list(APPEND qt Qt::${module})
        endif()
    endforeach()
    if(NOT TARGET ${name})
        file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
        add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF
            CXX_COMPILER_LAUNCHER "${KIVO_PRECOMPILED_HEADERS_LAUNCHER}")
        target_link_libraries(${name} PRIVATE kivo_test_flags ${qt})
        target_precompile_headers(${name} PRIVATE <QtTest>)
    endif()
    set(${out} ${name} PARENT_SCOPE)
endfunction()

# kivo_add_tests(<folder> UNITS ... LINK ...): one program, tests_<folder>, out of tests/<folder>/tst_<unit>.cpp, and a test
# <folder>/<unit> for each, which is a process of its own. REGISTERED_ELSEWHERE: units whose tests need more than that.
function(kivo_add_tests folder)
    cmake_parse_arguments(arg "" "" "UNITS;REGISTERED_ELSEWHERE;LINK" ${ARGN})
    set(program tests_${folder})
    list(TRANSFORM arg_UNITS REPLACE "(.+)" "${folder}/tst_\\1.cpp" OUTPUT_VARIABLE sources)
    add_executable(${program} ${sources})
    target_link_libraries(${program} PRIVATE kivo_test_flags kivo_test_support ${arg_LINK})
    kivo_precompiled_qttest(headers ${arg_LINK})
    target_precompile_headers(${program} REUSE_FROM ${headers})
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${program}_autogen/mocs_compilation.cpp
        PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    list(REMOVE_ITEM arg_UNITS ${arg_REGISTERED_ELSEWHERE})
    foreach(unit IN LISTS arg_UNITS)
        kivo_register_test(${folder}/${unit} ${unit})
    endforeach()
endfunction()

# kivo_register_test(<folder>/<name> <unit> [COMMAND ...] [ENVIRONMENT ...]): a test that runs a unit of the folder's
# program, or of the one that is given. It runs on Qt's offscreen platform in a home of its own, so that no test ever
# sees the settings of the person who runs it. Its folder for temporary files is its own too: running copies of the program
# find each other through it.
function(kivo_register_test test unit)
    cmake_parse_arguments(arg "" "" "COMMAND;ENVIRONMENT" ${ARGN})
    get_filename_component(folder ${test} DIRECTORY)
    get_filename_component(name ${test} NAME)
    if(NOT arg_COMMAND)
        set(arg_COMMAND tests_${folder})
    endif()
    set(platform offscreen)
    if(WIN32)
        # What is drawn on the panel is drawn with the system's fonts; the window's tests are about behaviour, and true
        # windows make them five times as slow. The offscreen platform has to be told where fonts lie.
        if(folder STREQUAL compose OR folder STREQUAL windows)
            set(platform windows)
        elseif(CMAKE_CROSSCOMPILING)
            list(APPEND arg_ENVIRONMENT QT_QPA_FONTDIR=/usr/share/fonts/opentype/noto)
        endif()
    endif()
    set(home ${CMAKE_BINARY_DIR}/test-home/${name})
    file(MAKE_DIRECTORY ${home})
    file(CHMOD ${home} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)  # it is the runtime folder too
    set(temporary ${CMAKE_BINARY_DIR}/test-tmp/${name})
    file(MAKE_DIRECTORY ${temporary})
    list(APPEND arg_ENVIRONMENT
        QT_QPA_PLATFORM=${platform} HOME=${home} TMPDIR=${temporary} XDG_CONFIG_HOME=${home}/.config
        XDG_DATA_HOME=${home}/.local/share XDG_CACHE_HOME=${home}/.cache XDG_RUNTIME_DIR=${home} LC_ALL=C.UTF-8)
    add_test(NAME ${test} COMMAND ${arg_COMMAND} ${unit})
    set_tests_properties(${test} PROPERTIES LABELS ${folder} ENVIRONMENT "${arg_ENVIRONMENT}")
    kivo_limit_tests(600 ${test})
endfunction()

# kivo_limit_tests(<seconds> <test>...): a net for what hangs, wide enough for a machine that is busy with other things; QtTest
# has the same for each row. Those that may take longest begin first, and the short ones fill the gaps.
function(kivo_limit_tests seconds)
    set_tests_properties(${ARGN} PROPERTIES
        TIMEOUT ${seconds} COST ${seconds} ENVIRONMENT_MODIFICATION QTEST_FUNCTION_TIMEOUT=set:${seconds}000)
endfunction()
