# Debian packages by `cpack -G DEB`, one a component; scripts/make_packages.sh builds and checks them.

# The change log begins with this version, and with the day of its release or the word unreleased.
file(STRINGS ${PROJECT_SOURCE_DIR}/CHANGELOG.md newest LIMIT_COUNT 1 REGEX "^## ")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
set(package_version ${PROJECT_VERSION})
set(distribution unstable)
if(newest MATCHES "unreleased$")
  string(APPEND package_version "~dev")  # older than the release to come
  set(distribution UNRELEASED)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME marovia)
set(CPACK_PACKAGE_VENDOR "The Marovia authors")
set(MAROVIA_PACKAGE_CONTACT "The Marovia authors <maintainers@marovia.org>"
    CACHE STRING "Who answers for the packages")
set(CPACK_PACKAGE_CONTACT ${MAROVIA_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${package_version})
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
# What uses the public interface runs with any later library of the same interface.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What a package is called, its line in a list of packages, and its description.
function(marovia_package component name summary text)
  string(TOUPPER ${component} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${name} PARENT_SCOPE)
  set(CPACK_COMPONENT_${key}_DESCRIPTION "${summary}\n${text}" PARENT_SCOPE)
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()

set(CPACK_COMPONENTS_ALL)
set(library libmarovia${interface_version})
set(same_version "(= ${package_version})")
set(same_library "${library} ${same_version}")
set(coder_text
    "Marovia compresses 8-bit grey images with wavelets and embedded bit-plane
coding: lossy at any rate, met to the byte, or lossless, with a region of
interest. A file cut anywhere still decodes.")

marovia_package(
  library ${library} "wavelet image codec - shared library"
  "${coder_text}

This package has the shared library, with a C++ and a C interface.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)

marovia_package(
  development libmarovia-dev "wavelet image codec - development files"
  "${coder_text}

This package has the headers, a CMake package and a pkg-config file.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${same_library}")

if(TARGET marovia_cli)
  marovia_package(
    tool marovia "wavelet image codec - command-line tool"
    "${coder_text}

This package has the command-line tool, the file types and sample images.")
  # By what the library shows to programs of its own version only.
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${same_library}")
endif()
if(TARGET marovia-window)
  marovia_package(
    window marovia-window "wavelet image codec - desktop program"
    "${coder_text}

This package has a window for it: a region drawn by mouse, error measures,
and both images compared at full resolution.")
  set(CPACK_DEBIAN_WINDOW_PACKAGE_DEPENDS "marovia ${same_version}, ${same_library}")
  marovia_package(
    qtplugin marovia-qt6-imageformat "wavelet image codec - plugin for Qt 6"
    "${coder_text}

With this package installed, image viewers on Qt 6 open such files.")
  set(CPACK_DEBIAN_QTPLUGIN_PACKAGE_DEPENDS "${library} (>= ${package_version})")
  set(CPACK_DEBIAN_QTPLUGIN_PACKAGE_RECOMMENDS marovia)
endif()

if(MAROVIA_WHEEL_PYTHON)
  marovia_package(
    python python3-marovia "wavelet image codec - Python 3 package"
    "${coder_text}

This package has the codec for numpy arrays, and a plugin for Pillow.")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
      "python3, python3-numpy, ${library} (>= ${package_version})")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS python3-pil)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
      "${CMAKE_CURRENT_SOURCE_DIR}/debian/python/postinst;${CMAKE_CURRENT_SOURCE_DIR}/debian/python/prerm")
endif()

string(TIMESTAMP build_time "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(debian/changelog.in debian_changelog @ONLY)
set(CPACK_MAROVIA_CHANGELOG ${CMAKE_CURRENT_BINARY_DIR}/debian_changelog)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/finish_packages.cmake)
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/drop_ldconfig.cmake)
include(CPack)
