# A layer is one folder, one target. It may lean only on layers of a lower floor, and configuring fails
# when a folder reaches up or sideways.
#
#   velora_layer(NAME floor USES lower... LIBRARIES outside... HIDDEN outside...)
#
# LIBRARIES are seen by the users of the layer, HIDDEN ones only by its own sources. A MODULE is loaded at run time by a
# program that has the layers below in it: it is compiled against them and linked with its LIBRARIES alone.
function(velora_layer name floor)
    cmake_parse_arguments(PARSE_ARGV 2 layer "MODULE" "" "USES;LIBRARIES;HIDDEN")
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)

    set_property(GLOBAL PROPERTY velora_floor_${name} ${floor})
    foreach(below IN LISTS layer_USES)
        get_property(below_floor GLOBAL PROPERTY velora_floor_${below})
        if(below_floor STREQUAL "" OR NOT below_floor LESS floor)
            message(FATAL_ERROR "${name} (floor ${floor}) may not lean on ${below} (floor '${below_floor}')")
        endif()
    endforeach()

    list(TRANSFORM layer_USES PREPEND velora_)
    if(layer_MODULE)
        add_library(velora_${name} MODULE ${sources} ${headers})
        target_link_libraries(velora_${name} PRIVATE velora_warnings ${layer_LIBRARIES})
        target_include_directories(velora_${name} PRIVATE ${CMAKE_SOURCE_DIR}/src)
        return()
    endif()
    if(sources)
        add_library(velora_${name} STATIC ${sources} ${headers})
        set(scope PUBLIC)
        target_link_libraries(velora_${name} PRIVATE velora_warnings ${layer_HIDDEN})
        target_precompile_headers(velora_${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/standard.h)
    else()
        add_library(velora_${name} INTERFACE ${headers})
        set(scope INTERFACE)
    endif()
    target_include_directories(velora_${name} ${scope} ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(velora_${name} ${scope} ${layer_USES} ${layer_LIBRARIES})
endfunction()
