# What this release is known by, for the packages of every system. The build includes it; as a script (cmake -P) it prints
# the same for a shell.
#   KIVO_VERSION, KIVO_HOMEPAGE  CMakeLists.txt says them; the homepage is empty until there is one
#   KIVO_RELEASE_KIND            "stable", or "development" while CHANGELOG.md says "not yet released"
#   KIVO_SOURCE_EPOCH            the time of the source, in seconds since 1970: SOURCE_DATE_EPOCH, else the last commit's
#   KIVO_RELEASE_DATE            CHANGELOG.md's, as 2026-11-21; before the release that of the source
block(PROPAGATE KIVO_VERSION KIVO_HOMEPAGE KIVO_RELEASE_KIND KIVO_SOURCE_EPOCH KIVO_RELEASE_DATE)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)

file(READ ${root}/CMakeLists.txt text)
string(REGEX MATCH "project\\(KivoScreen VERSION ([0-9.]+)" match "${text}")
set(KIVO_VERSION ${CMAKE_MATCH_1})
string(REGEX MATCH "HOMEPAGE_URL \"([^\"]*)\"" match "${text}")
set(KIVO_HOMEPAGE "${CMAKE_MATCH_1}")

file(STRINGS ${root}/CHANGELOG.md headings REGEX "^## " LIMIT_COUNT 1)
if(NOT headings MATCHES "^## ([0-9.]+), (not yet released|[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9])$")
    message(FATAL_ERROR "CHANGELOG.md begins with \"${headings}\", not with a version and its date")
endif()
if(NOT CMAKE_MATCH_1 VERSION_EQUAL KIVO_VERSION)
    message(FATAL_ERROR "CHANGELOG.md begins with ${CMAKE_MATCH_1}, but CMakeLists.txt has ${KIVO_VERSION}")
endif()
set(KIVO_RELEASE_DATE "${CMAKE_MATCH_2}")

set(KIVO_SOURCE_EPOCH "$ENV{SOURCE_DATE_EPOCH}")
if(KIVO_SOURCE_EPOCH STREQUAL "" AND EXISTS ${root}/.git)
    execute_process(COMMAND git -C ${root} log -1 --format=%ct OUTPUT_VARIABLE KIVO_SOURCE_EPOCH
        OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
if(NOT KIVO_SOURCE_EPOCH MATCHES "^[0-9]+$")
    file(TIMESTAMP ${root}/CHANGELOG.md KIVO_SOURCE_EPOCH "%s" UTC) # a bare copy of the files
endif()

if(KIVO_RELEASE_DATE STREQUAL "not yet released")
    set(KIVO_RELEASE_KIND development)
    set(outside "$ENV{SOURCE_DATE_EPOCH}")
    set(ENV{SOURCE_DATE_EPOCH} ${KIVO_SOURCE_EPOCH}) # TIMESTAMP goes by it
    string(TIMESTAMP KIVO_RELEASE_DATE "%Y-%m-%d" UTC)
    if(outside STREQUAL "")
        unset(ENV{SOURCE_DATE_EPOCH})
    endif()
else()
    set(KIVO_RELEASE_KIND stable)
endif()

if(CMAKE_SCRIPT_MODE_FILE)
    foreach(name VERSION HOMEPAGE RELEASE_KIND SOURCE_EPOCH RELEASE_DATE)
        execute_process(COMMAND ${CMAKE_COMMAND} -E echo "KIVO_${name}='${KIVO_${name}}'")
    endforeach()
else()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${root}/CHANGELOG.md)
endif()
endblock()
