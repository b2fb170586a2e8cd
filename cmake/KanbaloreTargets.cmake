# One place for the flags, the two kinds of libraries and the form of a test program.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTORCC ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    # The precompiled headers below need the sloppiness; see ccache's manual, "Precompiled headers".
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

# Some fifty programs are linked, each in a tenth of the time that the default linker takes.
find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

option(KANBALORE_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(KANBALORE_WERROR "Turn warnings into errors: for those who work on the program, not for those who build it" OFF)

include(CheckPIESupported)
check_pie_supported()
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

macro(kanbalore_options)
    add_library(kanbalore_options INTERFACE)
    target_compile_definitions(kanbalore_options INTERFACE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH)
    target_compile_options(kanbalore_options INTERFACE
        -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast
        $<$<BOOL:${KANBALORE_WERROR}>:-Werror>)
    # Hardened: files from outside are read here.
    target_compile_options(kanbalore_options INTERFACE -fstack-protector-strong
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>)
    target_link_options(kanbalore_options INTERFACE -Wl,-z,relro,-z,now)
    if(CCACHE)
        target_compile_options(kanbalore_options INTERFACE -fpch-preprocess)
    endif()
    if(KANBALORE_SANITIZE)
        # -O1: without it the tests of damaged files run into their time limits.
        target_compile_options(kanbalore_options INTERFACE -O1
            -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
        target_link_options(kanbalore_options INTERFACE -fsanitize=address,undefined)
    endif()

    # Two precompiled headers, one a kind of library; a third set of flags would not match either.
    add_library(pch_logic OBJECT "${PROJECT_SOURCE_DIR}/cmake/pch.cpp")
    target_link_libraries(pch_logic PUBLIC kanbalore_options Qt6::Core Qt6::Sql)
    target_precompile_headers(pch_logic PRIVATE "${PROJECT_SOURCE_DIR}/cmake/pch_logic.h")
    add_library(pch_screens OBJECT "${PROJECT_SOURCE_DIR}/cmake/pch.cpp")
    target_link_libraries(pch_screens PUBLIC kanbalore_options
        Qt6::Core Qt6::Sql Qt6::Gui Qt6::Widgets Qt6::PrintSupport)
    target_precompile_headers(pch_screens PRIVATE "${PROJECT_SOURCE_DIR}/cmake/pch_screens.h")
endmacro()

# One include root a house, holding nothing but that house ("roots/db/db" leads to src/db). A target sees its own
# and those of what it links, so that an include of a house above does not compile.
function(kanbalore_see_house target)
    file(RELATIVE_PATH path "${PROJECT_SOURCE_DIR}/src" "${CMAKE_CURRENT_SOURCE_DIR}")
    if(path MATCHES "^\\.\\.")
        return()
    endif()
    string(REGEX REPLACE "/.*" "" house "${path}")
    set(root "${PROJECT_BINARY_DIR}/roots/${house}")
    file(MAKE_DIRECTORY "${root}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/src/${house}" "${root}/${house}" SYMBOLIC)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "EXECUTABLE")
        target_include_directories(${target} PRIVATE "${root}")
    else()
        target_include_directories(${target} PUBLIC "${root}")
    endif()
endfunction()

# Logic: QtCore and QtSql only, so that no widget can slip in.
function(kanbalore_logic name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC kanbalore_options Qt6::Core Qt6::Sql ${ARG_LINK})
    kanbalore_see_house(${name})
    target_precompile_headers(${name} REUSE_FROM pch_logic)
endfunction()

# Screens: widgets and printing besides.
function(kanbalore_screens name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC kanbalore_options
        Qt6::Core Qt6::Sql Qt6::Gui Qt6::Widgets Qt6::PrintSupport ${ARG_LINK})
    kanbalore_see_house(${name})
    target_precompile_headers(${name} REUSE_FROM pch_screens)
endfunction()

# A test program tests/<house>/[<room>/]tst_<name>.cpp, run offscreen with a settings folder of its own.
# Named with its room: kanbalore_test(care/salvage LINK db).
function(kanbalore_test path)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LINK" ${ARGN})
    cmake_path(GET path FILENAME name)
    if(NOT ARG_SOURCES)
        cmake_path(REPLACE_FILENAME path tst_${name}.cpp OUTPUT_VARIABLE ARG_SOURCES)
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(tst_${name} ${ARG_SOURCES})
    set_target_properties(tst_${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    # With all that the precompiled header of the screens stands on: the same flags, and half the time.
    target_link_libraries(tst_${name} PRIVATE kanbalore_options
        Qt6::Core Qt6::Sql Qt6::Gui Qt6::Widgets Qt6::PrintSupport Qt6::Test ${ARG_LINK})
    target_precompile_headers(tst_${name} REUSE_FROM pch_screens)
    add_test(NAME ${name} COMMAND tst_${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT
        "QT_QPA_PLATFORM=offscreen;XDG_CONFIG_HOME=${CMAKE_BINARY_DIR}/tests/config/${name};XDG_DATA_HOME=${CMAKE_BINARY_DIR}/tests/data/${name};LC_ALL=C.UTF-8")
endfunction()
