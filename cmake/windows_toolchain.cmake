# Debian's mingw-w64 makes the Windows program. The libraries are those of packaging/windows/build_dependencies.sh,
# whose folder stands in KIVO_WINDOWS_DEPENDENCIES (test.sh sets it); what has to run, runs under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
# "posix": the kind with std::thread and std::mutex.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(KIVO_WINDOWS_DEPENDENCIES "$ENV{KIVO_WINDOWS_DEPENDENCIES}" CACHE PATH
    "The folder that packaging/windows/build_dependencies.sh prints")
# CMake reads this file once more for each of its own trials, which see no cache.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES KIVO_WINDOWS_DEPENDENCIES)
if(NOT EXISTS "${KIVO_WINDOWS_DEPENDENCIES}/complete")
    message(FATAL_ERROR "KIVO_WINDOWS_DEPENDENCIES does not name a finished folder; use ./test.sh windows")
endif()

set(CMAKE_FIND_ROOT_PATH ${KIVO_WINDOWS_DEPENDENCIES} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_PREFIX_PATH ${KIVO_WINDOWS_DEPENDENCIES})
# lrelease and lupdate run here, so they are this system's.
set(Qt5LinguistTools_DIR /usr/lib/x86_64-linux-gnu/cmake/Qt5LinguistTools)
set(ENV{PKG_CONFIG_LIBDIR} ${KIVO_WINDOWS_DEPENDENCIES}/lib/pkgconfig)

set(CMAKE_CROSSCOMPILING_EMULATOR
    ${CMAKE_CURRENT_LIST_DIR}/../tools/scripts/in_wine.sh --dlls ${KIVO_WINDOWS_DEPENDENCIES}/bin)
