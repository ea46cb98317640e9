# Warnings, sanitizers and definitions that hold for every target of ours.
add_library(murn_compiler INTERFACE)
target_compile_options(murn_compiler INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wcast-align -Wunused -Werror
    # Some libraries ask for it; the shared precompiled header fits only where all are alike.
    -pthread)
target_compile_definitions(murn_compiler INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)

# ccache can only see through a precompiled header when the compiler keeps it as an include.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND MURN_PCH)
    target_compile_options(murn_compiler INTERFACE -fpch-preprocess)
endif()

# Linking is a good part of a build of many small test programs: the fast linker where there is one.
find_program(MURN_MOLD mold)
if(MURN_MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# -march stays at the distribution's baseline: hot loops choose at run time.
if(MURN_SANITIZE)
    add_compile_options(-fsanitize=${MURN_SANITIZE} -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${MURN_SANITIZE})
    if(MURN_SANITIZE MATCHES "undefined")
        add_compile_options(-fno-sanitize-recover=undefined)
    endif()
endif()

# Clang checks the lock annotations of XPMutex.h.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(murn_compiler INTERFACE -Wthread-safety)
endif()
