# murn_module() makes one layer of the system: every .cpp of its folder in one static library.
#
#   murn_module(NAME tags LAYER 6 DEPENDS base types desktop QT Core [LINK ICU::uc] [PUBLIC Qt6::Core])
#
# A module may depend on modules of a lower layer only: configuring stops otherwise. It exports
# its own folder alone as include path and links its dependencies so that they are not passed
# on, so a header of a module that is not named in DEPENDS is not found by the compiler.
# Files are found, not listed: a new file in the folder belongs to the module.

# One precompiled header for all: with debug information it takes 150 MB, a target's own each
# would take more than everything else of a build together.
set(MURN_PCH_HEADERS <QString> <QByteArray> <QList> <QHash> <QMap> <QObject> <QDateTime>
    <memory> <mutex> <optional> <string> <variant> <vector> <functional> <atomic>)
if(MURN_PCH)
    file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/pch/murn_pch.cpp" CONTENT "")
    add_library(murn_pch STATIC "${CMAKE_BINARY_DIR}/pch/murn_pch.cpp")
    target_link_libraries(murn_pch PRIVATE murn_compiler Qt6::Core)
    set_target_properties(murn_pch PROPERTIES AUTOMOC OFF)
    target_precompile_headers(murn_pch PRIVATE ${MURN_PCH_HEADERS})
endif()

# OWN: the target's libraries bring macros that the shared one was not made with.
function(murn_pch target)
    cmake_parse_arguments(arg "OWN" "" "" ${ARGN})
    if(MURN_PCH AND arg_OWN)
        target_precompile_headers(${target} PRIVATE ${MURN_PCH_HEADERS})
    elseif(MURN_PCH)
        target_precompile_headers(${target} REUSE_FROM murn_pch)
    endif()
endfunction()

# Stops at a dependency that is not on a lower layer than `layer`.
function(murn_check_layers name layer)
    foreach(dependency IN LISTS ARGN)
        if(NOT TARGET murn_${dependency})
            message(FATAL_ERROR "murn_${name}: no module '${dependency}' on a lower layer")
        endif()
        get_target_property(dependency_layer murn_${dependency} MURN_LAYER)
        if(NOT dependency_layer LESS layer)
            message(FATAL_ERROR "murn_${name} (layer ${layer}) may not depend on "
                "murn_${dependency} (layer ${dependency_layer}): dependencies point down only")
        endif()
    endforeach()
endfunction()

function(murn_module)
    cmake_parse_arguments(arg "OWN_PCH" "NAME;LAYER" "DEPENDS;QT;LINK;PUBLIC" ${ARGN})
    murn_check_layers(${arg_NAME} ${arg_LAYER} ${arg_DEPENDS})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
        "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_library(murn_${arg_NAME} STATIC ${sources})
    set_target_properties(murn_${arg_NAME} PROPERTIES MURN_LAYER ${arg_LAYER}
        LINKER_LANGUAGE CXX)
    target_include_directories(murn_${arg_NAME} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
    list(TRANSFORM arg_DEPENDS PREPEND murn_ OUTPUT_VARIABLE modules)
    list(TRANSFORM arg_QT PREPEND Qt6:: OUTPUT_VARIABLE qt)
    target_link_libraries(murn_${arg_NAME} PUBLIC ${arg_PUBLIC} ${qt}
        PRIVATE murn_compiler ${modules} ${arg_LINK})
    if(arg_OWN_PCH)
        murn_pch(murn_${arg_NAME} OWN)
    else()
        murn_pch(murn_${arg_NAME})
    endif()
endfunction()

# A program: layer number and dependencies checked as for a module. INTERNAL: one that only other
# programs of ours start; it is installed where they look for it.
function(murn_program)
    cmake_parse_arguments(arg "INTERNAL" "NAME;LAYER" "DEPENDS;QT;LINK" ${ARGN})
    murn_check_layers(${arg_NAME} ${arg_LAYER} ${arg_DEPENDS})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
        "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_executable(${arg_NAME} ${sources})
    set_target_properties(${arg_NAME} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
    list(TRANSFORM arg_DEPENDS PREPEND murn_ OUTPUT_VARIABLE modules)
    list(TRANSFORM arg_QT PREPEND Qt6:: OUTPUT_VARIABLE qt)
    target_link_libraries(${arg_NAME} PRIVATE murn_compiler ${modules} ${qt} ${arg_LINK})
    murn_pch(${arg_NAME})
    set(folder "${CMAKE_INSTALL_BINDIR}")
    if(arg_INTERNAL)
        set(folder "${CMAKE_INSTALL_LIBEXECDIR}")
        # The two that people start run it: whoever builds one of them needs it too. (Evaluated now,
        # called once both are there.)
        cmake_language(EVAL CODE "cmake_language(DEFER DIRECTORY [[${CMAKE_SOURCE_DIR}]]
            CALL add_dependencies murn ${arg_NAME})
            cmake_language(DEFER DIRECTORY [[${CMAKE_SOURCE_DIR}]]
            CALL add_dependencies murnctl ${arg_NAME})")
    endif()
    install(TARGETS ${arg_NAME} RUNTIME DESTINATION "${folder}")
endfunction()

# The test program of one module: every *Test.cpp of the calling folder, with the module linked
# whole, so that a symbol taken from an undeclared module fails at link time.
function(murn_tests)
    cmake_parse_arguments(arg "" "NAME" "DEPENDS;QT;LINK" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
        "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_executable(murn_${arg_NAME}_tests ${sources})
    list(TRANSFORM arg_DEPENDS PREPEND murn_ OUTPUT_VARIABLE modules)
    list(TRANSFORM arg_QT PREPEND Qt6:: OUTPUT_VARIABLE qt)
    target_link_libraries(murn_${arg_NAME}_tests PRIVATE murn_compiler murn_testing
        murn_${arg_NAME} ${modules} ${qt} ${arg_LINK})
    set_target_properties(murn_${arg_NAME}_tests PROPERTIES
        LINK_LIBRARY_OVERRIDE_murn_${arg_NAME} WHOLE_ARCHIVE)
    murn_pch(murn_${arg_NAME}_tests)
    gtest_discover_tests(murn_${arg_NAME}_tests NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300)
endfunction()
