# Runs after the packages are made: a trigger has the system renew its list of libraries, so the
# scripts in which CPack calls ldconfig go.
find_program(DPKG_DEB dpkg-deb REQUIRED)

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(content ${CPACK_TEMPORARY_DIRECTORY}/content)
  file(REMOVE_RECURSE ${content})
  execute_process(COMMAND ${DPKG_DEB} -R ${package} ${content} COMMAND_ERROR_IS_FATAL ANY)
  if(EXISTS ${content}/DEBIAN/triggers)
    file(REMOVE ${content}/DEBIAN/postinst ${content}/DEBIAN/postrm)
    execute_process(COMMAND ${DPKG_DEB} --root-owner-group -b ${content} ${package}
                    COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
  endif()
endforeach()
