# What every target of this project has in common, and one function per kind of target.

include(CheckLinkerFlag)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
    # The sloppiness that ccache wants for precompiled headers.
    set(CMAKE_CXX_COMPILER_LAUNCHER env CCACHE_SLOPPINESS=pch_defines,time_macros "${CCACHE_PROGRAM}")
endif()

if(VELTRA4_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

if(VELTRA4_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()

add_library(veltra4_options INTERFACE)
target_compile_options(veltra4_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments> # Qt's QSKIP
    $<$<BOOL:${VELTRA4_WERROR}>:-Werror>)
target_compile_definitions(veltra4_options INTERFACE
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_DEPRECATED_WARNINGS)
# Headers are included with their folder, so that each include line shows which way it points.
target_include_directories(veltra4_options INTERFACE "${PROJECT_SOURCE_DIR}")

# The one version, for sources that include "projectversion.h".
configure_file("${CMAKE_CURRENT_LIST_DIR}/projectversion.h.in"
    "${PROJECT_BINARY_DIR}/generated/projectversion.h" @ONLY)
add_library(projectversion INTERFACE)
target_include_directories(projectversion INTERFACE "${PROJECT_BINARY_DIR}/generated")

# veltra4_add_headers(<name> HEADERS <header>... [LINK <target>...])
# Headers that many sources include, compiled once: without that they are most of what each takes.
function(veltra4_add_headers name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;LINK")
    add_library(${name} OBJECT "${PROJECT_SOURCE_DIR}/cmake/headers.cpp")
    target_link_libraries(${name} PUBLIC veltra4_options ${arg_LINK})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
    veltra4_compile_headers_for_ccache(${name})
endfunction()

# Only where there are such headers.
function(veltra4_use_headers target headers)
    if(NOT TARGET ${headers})
        return()
    endif()
    target_precompile_headers(${target} REUSE_FROM ${headers})
    veltra4_compile_headers_for_ccache(${target})
    if(NOT headers STREQUAL widgetheaders) # what moc makes of most other targets is empty
        set_source_files_properties("${CMAKE_CURRENT_BINARY_DIR}/${target}_autogen/mocs_compilation.cpp"
            PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
    endif()
endfunction()

# Compiles a dozen sources at once, which takes little longer than one of them. What they name in their unnamed
# namespaces must not meet.
function(veltra4_compile_together target)
    if(NOT VELTRA4_COMPILE_TOGETHER)
        return()
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 12)
    # GCC takes the sources for headers, and warns of classes in them with members of unnamed namespaces.
    target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endfunction()

function(veltra4_compile_headers_for_ccache target)
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endfunction()

# Links in a fraction of the time, where there is another linker; for what is not shipped.
function(veltra4_link_quickly target)
    check_linker_flag(CXX -fuse-ld=gold VELTRA4_HAS_GOLD)
    if(VELTRA4_HAS_GOLD)
        target_link_options(${target} PRIVATE -fuse-ld=gold)
    endif()
endfunction()

# veltra4_add_library(<name> [WIDGETS] SOURCES <file>... [LINK <target>...])
# One folder's static library, with or without widgets. Forms that its headers include are compiled
# automatically.
function(veltra4_add_library name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "WIDGETS" "" "SOURCES;LINK")
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC veltra4_options ${arg_LINK})
    target_include_directories(${name} INTERFACE "${CMAKE_CURRENT_BINARY_DIR}/${name}_autogen/include")
    if(arg_WIDGETS)
        veltra4_use_headers(${name} widgetheaders)
    else()
        veltra4_use_headers(${name} coreheaders)
    endif()
endfunction()
