# Warnings are errors, and every target of the project gets the same set.
add_library(velora_warnings INTERFACE)
target_compile_options(velora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)

# GCC 12 raises these from inside its own std::string and std::variant, wrongly.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(velora_warnings INTERFACE -Wno-maybe-uninitialized -Wno-restrict -Wno-array-bounds
        -Wno-stringop-overflow -Wno-stringop-overread)
endif()
