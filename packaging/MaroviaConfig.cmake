include("${CMAKE_CURRENT_LIST_DIR}/MaroviaTargets.cmake")
