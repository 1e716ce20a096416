# The Python package as Debian has its own: what pip would install, where Debian's Python looks. It is
# installed when asked for (`cmake --install BUILD --component python`); elsewhere that is pip's work.
find_program(MAROVIA_WHEEL_PYTHON python3)
if(NOT MAROVIA_WHEEL_PYTHON)
  return()
endif()
install(
  CODE "set(wheel_python ${MAROVIA_WHEEL_PYTHON})
        set(wheel_source ${PROJECT_SOURCE_DIR}/python)
        set(wheel_folder ${CMAKE_CURRENT_BINARY_DIR}/wheel)
        set(wheel_modules \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/lib/python3/dist-packages\")"
  COMPONENT python EXCLUDE_FROM_ALL)
install(SCRIPT ${CMAKE_CURRENT_SOURCE_DIR}/unpack_wheel.cmake COMPONENT python EXCLUDE_FROM_ALL)
