# Runs before each package is made: gives it its copyright and change log, and compresses what
# Debian's rules want compressed.
find_program(GZIP gzip REQUIRED)

function(compress file)
  execute_process(COMMAND ${GZIP} -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX})
  string(TOUPPER ${component} key)
  set(documents ${root}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  file(MAKE_DIRECTORY ${documents})
  configure_file(${CPACK_RESOURCE_FILE_LICENSE} ${documents}/copyright COPYONLY)
  configure_file(${CPACK_MAROVIA_CHANGELOG} ${documents}/changelog COPYONLY)
  compress(${documents}/changelog)
  file(GLOB pages ${root}/share/man/man?/*.?)
  foreach(page IN LISTS pages)
    compress(${page})
  endforeach()
endforeach()
