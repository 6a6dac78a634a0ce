# Fails when a source file includes a header of a higher layer.
#   cmake -DSOURCE_DIR=<repository> -P CheckLayers.cmake
#
# The layers, bottom up: 0 shared types; 1 the platform seam; 2 the logic
# (registry, .reg files, search engine, settings); 3 the window framework;
# 4 the windows and dialogs of every subsystem; 5 the application. A file may
# include its own layer and the layers below it. Tests, benchmarks and fuzz
# targets stand outside the layers and may include anything.

set(shared_types_pattern
    "^(framework/(BinaryBuffer|CaseFoldTable|CString|ObjArray|Text|UniqueHandle|Utf8)\\.|platform/WinTypes\\.h$|resources/resource\\.h$)")

function(layer_of path out)
    if(path MATCHES "${shared_types_pattern}")
        set(layer 0)
    elseif(path MATCHES "^platform/")
        set(layer 1)
    elseif(path MATCHES "^(regfile|search|settings)/.*_win\\.")
        set(layer 4)
    elseif(path MATCHES "^(registry|regfile|search|settings)/")
        set(layer 2)
    elseif(path MATCHES "^framework/")
        set(layer 3)
    elseif(path MATCHES "^(views|editors)/")
        set(layer 4)
    elseif(path MATCHES "^app/")
        set(layer 5)
    else()
        set(layer "")
    endif()
    set(${out} "${layer}" PARENT_SCOPE)
endfunction()

set(layer_names "shared types" "platform seam" "logic" "window framework" "windows and dialogs" "application")

set(sources "")
foreach(folder app editors framework platform regfile registry resources search settings views)
    file(GLOB_RECURSE found RELATIVE "${SOURCE_DIR}" "${SOURCE_DIR}/${folder}/*.h" "${SOURCE_DIR}/${folder}/*.cpp")
    list(APPEND sources ${found})
endforeach()
set(violations "")
foreach(source IN LISTS sources)
    layer_of("${source}" source_layer)
    if(source_layer STREQUAL "")
        continue()
    endif()
    file(STRINGS "${SOURCE_DIR}/${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]+\"")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]+\"([^\"]+)\".*" "\\1" header "${line}")
        layer_of("${header}" header_layer)
        if(NOT header_layer STREQUAL "" AND header_layer GREATER source_layer)
            list(GET layer_names ${source_layer} from)
            list(GET layer_names ${header_layer} to)
            string(APPEND violations "  ${source} (${from}) includes ${header} (${to})\n")
        endif()
    endforeach()
endforeach()

if(NOT violations STREQUAL "")
    message(FATAL_ERROR "Includes must point down the layers:\n${violations}")
endif()
