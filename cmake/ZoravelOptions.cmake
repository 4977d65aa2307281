# SPDX-License-Identifier: GPL-3.0-or-later
# What every target of this project is compiled with; linked privately, so that a project that takes
# the libraries in is not bound by it.
option(ZORAVEL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)
option(ZORAVEL_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(ZORAVEL_FUZZ "Build the fuzz targets with the engine and the sanitizers of Clang" OFF)

add_library(zoravel_options INTERFACE)
target_compile_definitions(zoravel_options INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_CAST_FROM_BYTEARRAY
    QT_NO_URL_CAST_FROM_STRING
    QT_USE_QSTRINGBUILDER)

if(MSVC)
    target_compile_options(zoravel_options INTERFACE /W4 $<$<BOOL:${ZORAVEL_WARNINGS_AS_ERRORS}>:/WX>)
else()
    target_compile_options(zoravel_options INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
        $<$<BOOL:${ZORAVEL_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

if(ZORAVEL_SANITIZE)
    target_compile_options(zoravel_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    target_link_options(zoravel_options INTERFACE -fsanitize=address,undefined)
endif()

if(ZORAVEL_FUZZ)
    target_compile_options(zoravel_options INTERFACE
        -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined
        -fno-omit-frame-pointer)
    target_link_options(zoravel_options INTERFACE -fsanitize=address,undefined)
endif()

# zoravel_library(<name> SOURCES <file>... [LINKS <target>...]): the static library of one folder. It
# can include only what it links, so the link graph is the rule of who may know whom.
function(zoravel_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE zoravel_options)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()
