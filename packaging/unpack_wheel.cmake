# Runs while the Python package is installed: makes its wheel, and unpacks that into the modules.
file(REMOVE_RECURSE ${wheel_folder})
file(MAKE_DIRECTORY ${wheel_folder} ${wheel_modules})
execute_process(COMMAND ${CMAKE_COMMAND} -E env PYTHONDONTWRITEBYTECODE=1 ${wheel_python}
                        ${wheel_source}/make_wheel.py ${wheel_folder}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB wheel ${wheel_folder}/*.whl)
file(ARCHIVE_EXTRACT INPUT ${wheel} DESTINATION ${wheel_modules})
# What names the files that pip put in place; here dpkg knows them.
file(GLOB record ${wheel_modules}/marovia-*.dist-info/RECORD)
file(REMOVE ${record})
