# Which commit the program is built from, for --version and the reports of its users: "1a2b3c4d5e6f", with "-dirty" where
# sources were changed. Asked of git in every build, or a commit that follows the configuring would go unnoticed; where the
# sources are an archive, cmake/commit.txt holds it. Empty where nobody knows.
#
# kivo_add_commit(<target>): the target gets commit.cpp, the only source that a new commit changes.
function(kivo_add_commit target)
    set(output ${CMAKE_BINARY_DIR}/commit/commit.cpp)
    find_program(KIVO_GIT git)
    mark_as_advanced(KIVO_GIT)
    add_custom_target(kivo_commit
        COMMAND ${CMAKE_COMMAND} -D GIT=${KIVO_GIT} -D SOURCES=${PROJECT_SOURCE_DIR} -D OUTPUT=${output}
            -P ${PROJECT_SOURCE_DIR}/cmake/KivoCommit.cmake
        BYPRODUCTS ${output}
        VERBATIM)
    target_sources(${target} PRIVATE ${output})
    set_source_files_properties(${output} PROPERTIES SKIP_AUTOGEN ON)
    add_dependencies(${target} kivo_commit)
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
    return()
endif()

set(commit "")
# Deliberate: only where these sources are a clone themselves. An archive that lies in somebody's clone is not that clone.
if(GIT AND EXISTS ${SOURCES}/.git)
    execute_process(COMMAND ${GIT} -C ${SOURCES} describe --always --dirty --abbrev=12 --exclude=*
        OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
elseif(EXISTS ${SOURCES}/cmake/commit.txt)
    # In full there: how short git makes it differs from clone to clone, and so would the archives.
    file(STRINGS ${SOURCES}/cmake/commit.txt commit LIMIT_COUNT 1)
    string(SUBSTRING "${commit}" 0 12 commit)
endif()
if(NOT commit MATCHES "^[0-9a-f]+(-dirty)?$")
    set(commit "")
endif()
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[#include "main/version.h"

namespace kivo {

QString SourceCommit() {
    return QStringLiteral("@commit@");
}

}  // namespace kivo
]])
