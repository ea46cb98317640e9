# Compiles data/translations/*.ts (texts by id) and embeds them in `target` under :/translations.
# XPTranslations installs them at start.
function(murn_translations target)
    file(GLOB texts CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/data/translations/*.ts")
    set(folder "${CMAKE_CURRENT_BINARY_DIR}/translations")
    set(entries "")
    foreach(text IN LISTS texts)
        get_filename_component(name "${text}" NAME_WE)
        add_custom_command(OUTPUT "${folder}/${name}.qm" DEPENDS "${text}"
            COMMAND Qt6::lrelease -silent -idbased "${text}" -qm "${folder}/${name}.qm"
            COMMENT "Compiling the texts of ${name}" VERBATIM)
        list(APPEND compiled "${folder}/${name}.qm")
        string(APPEND entries "<file>${name}.qm</file>")
    endforeach()
    file(CONFIGURE OUTPUT "${folder}/murn_translations.qrc" @ONLY CONTENT
        "<RCC><qresource prefix=\"/translations\">${entries}</qresource></RCC>\n")
    add_custom_command(OUTPUT "${folder}/murn_translations.cpp"
        DEPENDS ${compiled} "${folder}/murn_translations.qrc"
        COMMAND Qt6::rcc --name murn_translations --output "${folder}/murn_translations.cpp"
            "${folder}/murn_translations.qrc" VERBATIM)
    target_sources(${target} PRIVATE "${folder}/murn_translations.cpp")
    set_source_files_properties("${folder}/murn_translations.cpp" PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON SKIP_AUTOGEN ON)
endfunction()
