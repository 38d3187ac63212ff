# The windows need Qt; a machine without it builds and runs everything else.
if(VELORA_WINDOWS)
    find_package(Qt6 6.4 QUIET COMPONENTS Widgets Test)
    if(NOT Qt6_FOUND)
        message(STATUS "Qt 6.4 is not here (qt6-base-dev): the windows are left out, all other commands are built.")
        set(VELORA_WINDOWS OFF)
    endif()
endif()

# A test that is told where the module is: nowhere, where it is not built.
function(velora_test_with_windows target)
    velora_takes_windows(${target})
    set(module "")
    if(VELORA_WINDOWS)
        set(module ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/velora-windows.so)
    endif()
    target_compile_definitions(${target} PRIVATE VELORA_WINDOWS_MODULE="${module}")
endfunction()

# A program into which the module of the windows can be loaded.
function(velora_takes_windows target)
    set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
    if(VELORA_WINDOWS)
        add_dependencies(${target} velora_windows)
    endif()
endfunction()
