# Before the files of a package are put together: manuals and the list of changes as Debian wants
# them, without a time in them, so that the same build gives the same bytes.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/*.1" "${CPACK_TEMPORARY_DIRECTORY}/changelog")
foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9nf "${page}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
