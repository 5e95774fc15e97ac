# cmake -DSOURCE=... -DBUILD=... -DHOST_LIBRARY=... -DGENERATOR=... -P check_module_only.cmake
#
# Builds the module alone against host headers that stand elsewhere, as an integrator would: optimised, and with
# every warning an error.

file(REMOVE_RECURSE "${BUILD}")
file(COPY "${SOURCE}/host" DESTINATION "${BUILD}/sdk")
# Told apart from the project's own by what only they say; see the check below.
file(APPEND "${BUILD}/sdk/host/control.h" "\n#pragma message(\"the other host's headers\")\n")
file(MAKE_DIRECTORY "${BUILD}/empty/host")

function(configure host_dir)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BUILD}/build" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=Release
            -DCMAKE_UNITY_BUILD=ON -DGENOSTAT_WERROR=ON -DGENOSTAT_MODULE_ONLY=ON "-DGENOSTAT_HOST_DIR=${host_dir}"
            "-DGENOSTAT_HOST_LIBRARY=${HOST_LIBRARY}"
    OUTPUT_QUIET ERROR_VARIABLE errors RESULT_VARIABLE status)
  # CMake breaks its messages into lines.
  string(REGEX REPLACE "[ \n]+" " " errors "${errors}")
  set(errors "${errors}" PARENT_SCOPE)
  set(status "${status}" PARENT_SCOPE)
endfunction()

function(build)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${BUILD}/build" --target zorvwgnm
    OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
  set(output "${output}" PARENT_SCOPE)
  set(status "${status}" PARENT_SCOPE)
endfunction()

foreach(host_dir IN ITEMS "" "${BUILD}/empty")
  configure("${host_dir}")
  string(FIND "${errors}" "no headers in GENOSTAT_HOST_DIR (\"${host_dir}\")" position)
  if(status EQUAL 0 OR position EQUAL -1)
    message(FATAL_ERROR "a host folder without headers (\"${host_dir}\") was accepted, or not named:\n${errors}")
  endif()
endforeach()

configure("${BUILD}/sdk")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${errors}")
endif()
build()
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${output}")
endif()
if(NOT output MATCHES "the other host's headers")
  message(FATAL_ERROR "the module was built against the project's own host headers")
endif()
file(GLOB module "${BUILD}/build/bin/zorvwgnm.*")
if(NOT module)
  message(FATAL_ERROR "no module was built")
endif()

# The project's own header must not take the place of one that the other host lacks.
file(REMOVE "${BUILD}/sdk/host/path_service.h")
build()
if(status EQUAL 0 OR NOT output MATCHES "host/path_service.h: No such file")
  message(FATAL_ERROR "host headers without path_service.h did not fail for its sake:\n${output}")
endif()
