# The folders that the codec is made of become one library, marovia; those of the fronts, one each.
# A target sees the headers of the whole tree; tests/check_includes.sh holds the directions.

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
if(CMAKE_SIZEOF_VOID_P EQUAL 4 AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Words of 64 bits hold sets of a few, which index tables by sizes of 32.
  target_compile_options(marovia_options INTERFACE -Wno-shorten-64-to-32)
endif()
if(MAROVIA_WERROR)
  target_compile_options(marovia_options INTERFACE -Werror)
endif()

# Shared or static by BUILD_SHARED_LIBS; packaging/ says how it is installed.
add_library(marovia)
add_library(Marovia::marovia ALIAS marovia)
target_link_libraries(marovia PRIVATE $<BUILD_INTERFACE:marovia_options>)
if(BUILD_SHARED_LIBS)
  # The map decides what is seen from outside. Inside, calls stay as direct as in a static library.
  set_target_properties(marovia PROPERTIES CXX_VISIBILITY_PRESET default)
  target_compile_options(marovia PRIVATE -fno-semantic-interposition)
endif()

# A folder of the codec; whoever links it links the library.
function(marovia_codec_folder folder)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  target_sources(marovia PRIVATE ${ARG_SOURCES})
  add_library(marovia_${folder} INTERFACE)
  target_link_libraries(marovia_${folder} INTERFACE marovia_options marovia)
endfunction()

function(marovia_library folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  set(target marovia_${folder})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_link_libraries(${target} PUBLIC marovia_options ${ARG_LINK})
endfunction()

# Installed into that folder below the prefix, the target finds the library, even in a tree that was
# moved. Where the system looks for libraries by itself nothing is needed.
function(marovia_finds_library target folder)
  if(NOT CMAKE_INSTALL_FULL_LIBDIR IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
    file(RELATIVE_PATH way ${CMAKE_INSTALL_PREFIX}/${folder} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${way}")
  endif()
endfunction()
