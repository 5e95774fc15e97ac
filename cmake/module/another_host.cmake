# A build of the module alone, against the headers and the library of another host.

set(GENOSTAT_HOST_DIR "" CACHE PATH "Folder that holds the host's headers as host/*.h")
set(GENOSTAT_HOST_LIBRARY "" CACHE FILEPATH "Library that implements the host's headers")

set(host_headers "")
if(GENOSTAT_HOST_DIR)
  file(GLOB host_headers "${GENOSTAT_HOST_DIR}/host/*.h")
endif()
if(NOT host_headers)
  message(FATAL_ERROR "no headers in GENOSTAT_HOST_DIR (\"${GENOSTAT_HOST_DIR}\"): "
    "GENOSTAT_MODULE_ONLY needs a folder that holds the host's headers as host/*.h")
endif()
if(NOT GENOSTAT_HOST_LIBRARY)
  message(FATAL_ERROR "GENOSTAT_MODULE_ONLY needs GENOSTAT_HOST_LIBRARY, the host's import library or shared object")
endif()

add_library(zorvhost SHARED IMPORTED GLOBAL)
set_target_properties(zorvhost PROPERTIES
  IMPORTED_LOCATION "${GENOSTAT_HOST_LIBRARY}" IMPORTED_IMPLIB "${GENOSTAT_HOST_LIBRARY}")

# Were the tree itself on the search path, its host/ would stand in for whatever header the other host lacks. So a
# folder with links to the module's own rooms takes its place.
set(rooms_dir "${PROJECT_BINARY_DIR}/module_rooms")
file(MAKE_DIRECTORY "${rooms_dir}/common")
foreach(room IN ITEMS entry jobs run results errors platform common/json)
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${room}" "${rooms_dir}/${room}" SYMBOLIC)
endforeach()
set(GENOSTAT_INCLUDE_DIRS "${rooms_dir}" "${GENOSTAT_HOST_DIR}")
