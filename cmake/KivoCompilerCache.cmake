# Where there is ccache, every preset compiles through it: what has been compiled once on a machine, in whichever clone, is
# not compiled again. Included before the first target.
#
# Paths below the clone are hashed relative to the folder that is compiled in, and the build folder itself is not
# (-ffile-prefix-map keeps it out of the debug information: debuggers that are started in the clone find the sources). The
# cache is the project's own, so that its bound holds for nobody else's; CCACHE_DIR names another.
add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
find_program(KIVO_CCACHE ccache)
mark_as_advanced(KIVO_CCACHE)
if(NOT KIVO_CCACHE)
    return()
endif()
if(DEFINED ENV{CCACHE_DIR})
    set(folder $ENV{CCACHE_DIR})
elseif(DEFINED ENV{XDG_CACHE_HOME})
    set(folder $ENV{XDG_CACHE_HOME}/kivo-screen/ccache)
else()
    set(folder $ENV{HOME}/.cache/kivo-screen/ccache)
endif()
set(launcher
    ${CMAKE_COMMAND} -E env
    CCACHE_DIR=${folder}
    CCACHE_MAXSIZE=6G
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR}
    CCACHE_NOHASHDIR=1
    CCACHE_PCH_EXTSUM=1
    CCACHE_SLOPPINESS=pch_defines,time_macros)
# By what the compiler says that it has read: no preprocessor runs beforehand, and the macros of a precompiled header count.
set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher} CCACHE_DEPEND=1 ${KIVO_CCACHE})
set(KIVO_PRECOMPILED_HEADERS_LAUNCHER sh ${CMAKE_CURRENT_LIST_DIR}/sum_of_headers.sh ${CMAKE_CXX_COMPILER_LAUNCHER})
# By what the preprocessor leaves: for sources with the clone's path in comments.
set(KIVO_CCACHE_WITHOUT_COMMENTS ${launcher} ${KIVO_CCACHE})
