# SPDX-License-Identifier: GPL-3.0-or-later
# The compile options of all targets of this project. They are linked privately, so they do not bind
# a project that takes the libraries in.
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

# A compiler lacks the options for defences that its processor does not have. _FORTIFY_SOURCE needs
# optimised code, which the build type chooses. The programs record their compile options, without
# paths. This holds for everything that is built, generated files included.
option(ZORAVEL_HARDENED "Build with the defences that packages of distributions have" OFF)
if(ZORAVEL_HARDENED)
    include(CheckCXXCompilerFlag)
    foreach(defence IN ITEMS stack-protector-strong stack-clash-protection cf-protection
            record-gcc-switches)
        check_cxx_compiler_flag(-f${defence} ZORAVEL_HAS_${defence})
        if(ZORAVEL_HAS_${defence})
            add_compile_options(-f${defence})
        endif()
    endforeach()
    add_compile_definitions(_FORTIFY_SOURCE=2 _GLIBCXX_ASSERTIONS)
    add_link_options(-pie -Wl,-z,relro,-z,now)
endif()

# The most included headers are parsed once and not for every file. GCC and Clang only: they accept
# them in programs with other macros, as long as the headers use none of those.
option(ZORAVEL_PRECOMPILE "Parse the most used headers once a build" OFF)
if(ZORAVEL_PRECOMPILE)
    foreach(kind IN ITEMS core window)
        file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/precompiled_${kind}.cpp CONTENT "")
        add_library(zoravel_precompiled_${kind} OBJECT ${CMAKE_BINARY_DIR}/precompiled_${kind}.cpp)
        target_precompile_headers(zoravel_precompiled_${kind} PRIVATE
            ${CMAKE_CURRENT_LIST_DIR}/precompiled_${kind}.h)
        set_target_properties(zoravel_precompiled_${kind} PROPERTIES AUTOMOC OFF AUTOUIC OFF AUTORCC OFF)
        target_link_libraries(zoravel_precompiled_${kind} PRIVATE zoravel_options Qt6::Core)
    endforeach()
    target_link_libraries(zoravel_precompiled_window PRIVATE Qt6::Widgets)
endif()

# zoravel_precompile(<target> core|window): uses the precompiled headers.
function(zoravel_precompile target kind)
    if(ZORAVEL_PRECOMPILE)
        target_precompile_headers(${target} REUSE_FROM zoravel_precompiled_${kind})
    endif()
endfunction()

# zoravel_library(<name> SOURCES <file>... [LINKS <target>...]): the static library of a folder or
# of a part of one. It may include only what it links; a test reads the link graph from
# layers/<name> in the build folder.
function(zoravel_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
    add_library(${name} STATIC ${arg_SOURCES})
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE zoravel_options)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
    file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/layers/${name}
        CONTENT "$<TARGET_PROPERTY:${name},LINK_LIBRARIES>\n${arg_SOURCES}\n")
    if(Qt6::Widgets IN_LIST arg_LINKS)
        zoravel_precompile(${name} window)
    else()
        zoravel_precompile(${name} core)
    endif()
endfunction()
