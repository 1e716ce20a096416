# One library a folder. A target sees the headers of the whole tree but links only what it names, so
# an include against the direction of the dependencies fails to link.

add_library(marovia_options INTERFACE)
target_include_directories(
  marovia_options INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include
                            ${PROJECT_BINARY_DIR}/include)
# A fused multiply-add rounds once where the format rounds twice: contraction would make the bytes
# of a file depend on the machine.
target_compile_options(marovia_options INTERFACE -ffp-contract=off)
target_compile_options(
  marovia_options
  INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
            -Woverloaded-virtual)
if(MAROVIA_WERROR)
  target_compile_options(marovia_options INTERFACE -Werror)
endif()

function(marovia_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  set(target marovia_${folder})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_link_libraries(${target} PUBLIC marovia_options ${ARG_LINK})
endfunction()
