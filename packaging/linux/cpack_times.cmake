# Run by CPack over what it is about to pack: every file has the source's time, however old the clone is.
if("$ENV{SOURCE_DATE_EPOCH}" MATCHES "^[0-9]+$")
    execute_process(COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +
        COMMAND_ERROR_IS_FATAL ANY)
endif()
