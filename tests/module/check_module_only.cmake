# cmake -DSOURCE=... -DBUILD=... -DHOST_LIBRARY=... -DGENERATOR=... -P check_module_only.cmake
#
# Builds the module alone against host headers that stand elsewhere, as an integrator would.

file(REMOVE_RECURSE "${BUILD}")
file(COPY "${SOURCE}/host" DESTINATION "${BUILD}/sdk")
# Told apart from the project's own by what only they say; see the check below.
file(APPEND "${BUILD}/sdk/host/control.h" "\n#pragma message(\"the other host's headers\")\n")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${BUILD}/build" -G "${GENERATOR}" -DGENOSTAT_MODULE_ONLY=ON
          "-DGENOSTAT_HOST_DIR=${BUILD}/sdk" "-DGENOSTAT_HOST_LIBRARY=${HOST_LIBRARY}" -DCMAKE_CXX_FLAGS=-O0
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${BUILD}/build" --target zorvwgnm
  OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
if(NOT output MATCHES "the other host's headers")
  message(FATAL_ERROR "the module was built against the project's own host headers")
endif()
file(GLOB module "${BUILD}/build/bin/zorvwgnm.*")
if(NOT module)
  message(FATAL_ERROR "no module was built")
endif()
