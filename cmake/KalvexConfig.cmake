# find_package(Kalvex) gives the target Kalvex::core.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
include(${CMAKE_CURRENT_LIST_DIR}/KalvexTargets.cmake)
