# Installs a file that names where programs lie (@MURN_BINDIR@, @MURN_LIBEXECDIR@). That is known
# only while it is installed: `--prefix` and packages have places of their own.
function(murn_install_with_places source folder)
    cmake_path(ABSOLUTE_PATH source)
    cmake_path(GET source STEM LAST_ONLY name)
    set(made "${CMAKE_CURRENT_BINARY_DIR}/${name}")
    install(CODE "
        set(MURN_BINDIR \"${CMAKE_INSTALL_BINDIR}\")
        set(MURN_LIBEXECDIR \"${CMAKE_INSTALL_LIBEXECDIR}\")
        set(folder \"${folder}\")
        cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_PREFIX OUTPUT_VARIABLE prefix)
        foreach(place IN ITEMS MURN_BINDIR MURN_LIBEXECDIR folder)
            cmake_path(ABSOLUTE_PATH \${place} BASE_DIRECTORY \"\${prefix}\" NORMALIZE)
        endforeach()
        configure_file(\"${source}\" \"${made}\" @ONLY)
        file(INSTALL \"${made}\" DESTINATION \"\${folder}\")" COMPONENT places)
endfunction()
