# What `cmake --install` lays down beside the programs: what host integrators build with, documents, licences.

include(CMakePackageConfigHelpers)

# The host's headers, and those of the standalone host that a program needs to run a session.
set(include_dir "${CMAKE_INSTALL_INCLUDEDIR}/genostat")
install(FILES jobs/geno_stat_algo_manager.h DESTINATION "${include_dir}/jobs")
install(FILES platform/export.h platform/path_text.h platform/running_program.h DESTINATION "${include_dir}/platform")
install(FILES standalone/procedures/commands.h DESTINATION "${include_dir}/standalone/procedures")
install(DIRECTORY common DESTINATION "${include_dir}" FILES_MATCHING PATTERN "*.h")
foreach(room IN ITEMS host standalone/language standalone/services standalone/session standalone/data standalone/syntax standalone/output)
  install(DIRECTORY "${room}/" DESTINATION "${include_dir}/${room}" FILES_MATCHING PATTERN "*.h" PATTERN web EXCLUDE)
endforeach()

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/genostat")
configure_package_config_file(cmake/package/genostatConfig.cmake.in "${PROJECT_BINARY_DIR}/genostatConfig.cmake"
  INSTALL_DESTINATION "${package_dir}" PATH_VARS GENOSTAT_INSTALL_DIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/genostatConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/genostatConfig.cmake" "${PROJECT_BINARY_DIR}/genostatConfigVersion.cmake"
  DESTINATION "${package_dir}")
install(EXPORT genostat NAMESPACE genostat:: FILE genostatTargets.cmake DESTINATION "${package_dir}")

# Beside the programs, who look for it there.
install(DIRECTORY strings DESTINATION ${GENOSTAT_INSTALL_DIR} FILES_MATCHING PATTERN "*.txt")
install(DIRECTORY docs examples DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(FILES CHANGELOG.md CONTRIBUTING.md LICENSE README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
if(WIN32)
  install(FILES LICENSE DESTINATION . RENAME LICENSE.txt)
else()
  # Where Debian's users look for it.
  install(FILES LICENSE DESTINATION "${CMAKE_INSTALL_DOCDIR}" RENAME copyright)
endif()

# The notices of what is compiled in, from where the packages keep them.
set(GENOSTAT_NOTICES_DIR /usr/share/doc CACHE PATH "Where each package has a folder with its file copyright")
set(notices rapidjson-dev libcli11-dev libeigen3-dev libboost-dev libhwy-dev libfmt-dev)
if(WIN32)
  # Linked statically there: the compiler's run-time libraries, and zlib.
  list(APPEND notices gcc-mingw-w64-base mingw-w64-common libz-mingw-w64-dev)
  # Debian's notices name these texts, which every Debian system has.
  install(FILES /usr/share/common-licenses/Apache-2.0 /usr/share/common-licenses/GPL-3
    /usr/share/common-licenses/MPL-2.0 DESTINATION "${CMAKE_INSTALL_DOCDIR}/licences" OPTIONAL)
endif()
foreach(package IN LISTS notices)
  set(notice "${GENOSTAT_NOTICES_DIR}/${package}/copyright")
  if(EXISTS "${notice}")
    install(FILES "${notice}" DESTINATION "${CMAKE_INSTALL_DOCDIR}/licences" RENAME "${package}.txt")
  else()
    message(STATUS "${notice} is missing and will not be installed")
  endif()
endforeach()

if(CMAKE_CROSSCOMPILING)
  return()
endif()

# The programs write their own manual pages and completions.
set(documents "${PROJECT_BINARY_DIR}/documents")
file(MAKE_DIRECTORY "${documents}")
set(made "")
foreach(program IN ITEMS genostat genostat-analysis)
  foreach(form IN ITEMS man bash zsh fish)
    add_custom_command(OUTPUT "${documents}/${program}.${form}"
      COMMAND "${CMAKE_COMMAND}" -E env LC_ALL=C $<TARGET_FILE:${program}> --generate ${form} > "${documents}/${program}.${form}"
      DEPENDS ${program} VERBATIM)
    list(APPEND made "${documents}/${program}.${form}")
  endforeach()
  install(FILES "${documents}/${program}.man" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" RENAME "${program}.1")
  install(FILES "${documents}/${program}.bash"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME "${program}")
  install(FILES "${documents}/${program}.zsh"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" RENAME "_${program}")
  install(FILES "${documents}/${program}.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" RENAME "${program}.fish")
endforeach()
add_custom_target(program_documents ALL DEPENDS ${made})
