# cpack: a .deb from a native build, a .zip from a Windows build. scripts/package makes and tries both.

set(CPACK_PACKAGE_NAME genostat)
set(CPACK_PACKAGE_VENDOR "Genostat")
set(CPACK_PACKAGE_CONTACT "Genostat")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "quality control of FASTQ files with statistics")
set(CPACK_PACKAGE_DESCRIPTION "Measures FASTQ sequencing files in the background and makes tables, charts and
statistics of the results: a module for statistics applications, a standalone
host that runs command syntax, and the analyser for the command line.")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "genostat-${PROJECT_VERSION}-windows-x86_64")
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION science)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  # Found beside the programs, in nobody's package.
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  # Its strictness about folders' modes does not depend on the builder's umask.
  set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
      OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endif()
include(CPack)
