# Header-only packages that Debian installs below /usr/include.
#
# A cross build must never see /usr/include itself: it holds glibc's headers.
# Each package therefore gets a directory of its own in the build tree with
# one symbolic link in it, and only that directory is put on the search path.

set(GENOSTAT_PACKAGE_INCLUDE_DIR /usr/include CACHE PATH
    "Where the header-only packages (rapidjson, CLI, hwy, fmt) are installed")

# genostat_add_header_package(<target> <probe header> <link name> <directory>)
function(genostat_add_header_package target probe name directory)
  if(NOT EXISTS "${directory}/${probe}")
    message(FATAL_ERROR "${target}: ${directory}/${probe} not found; scripts/setup installs it")
  endif()
  set(root "${PROJECT_BINARY_DIR}/third_party/${name}")
  file(MAKE_DIRECTORY "${root}")
  file(CREATE_LINK "${directory}" "${root}/${name}" SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM INTERFACE "${root}")
endfunction()

genostat_add_header_package(third_party::rapidjson
  document.h rapidjson "${GENOSTAT_PACKAGE_INCLUDE_DIR}/rapidjson")
if(NOT GENOSTAT_MODULE_ONLY)
  genostat_add_header_package(third_party::cli11
    CLI.hpp CLI "${GENOSTAT_PACKAGE_INCLUDE_DIR}/CLI")
  genostat_add_header_package(third_party::eigen
    Dense Eigen "${GENOSTAT_PACKAGE_INCLUDE_DIR}/eigen3/Eigen")
  # A few of its files bear a licence that programs would have to follow; this refuses them.
  target_compile_definitions(third_party::eigen INTERFACE EIGEN_MPL2_ONLY)
  genostat_add_header_package(third_party::boost
    math/distributions.hpp boost "${GENOSTAT_PACKAGE_INCLUDE_DIR}/boost")
  genostat_add_header_package(third_party::hwy
    highway.h hwy "${GENOSTAT_PACKAGE_INCLUDE_DIR}/hwy")
  # Debian's compiled half is for this system only; cross builds need the headers alone.
  genostat_add_header_package(third_party::fmt
    format.h fmt "${GENOSTAT_PACKAGE_INCLUDE_DIR}/fmt")
  target_compile_definitions(third_party::fmt INTERFACE FMT_HEADER_ONLY)
endif()
