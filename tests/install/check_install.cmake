# cmake -DBUILD=... -DSOURCE=... -DWORK=... -DGENERATOR=... -DTOOLCHAIN=... -DEMULATOR=... -DFOLDER=... -P check_install.cmake
#
# Installs what was built, moves it to a folder of an uncommon name, builds the example host against it there and
# runs a job; then, of a native build, reads the manual pages and completions. FOLDER is that of the programs; TOOLCHAIN and EMULATOR are
# those of a cross build.

file(REMOVE_RECURSE "${WORK}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/first"
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
set(prefix "${WORK}/Prüf Ordner")
file(RENAME "${WORK}/first" "${prefix}")

set(example "${prefix}/share/doc/genostat/examples/host")
# A cross build looks for packages in the target's own tree alone, but goes where it is told.
set(options "-Dgenostat_DIR=${prefix}/lib/cmake/genostat")
if(TOOLCHAIN)
  list(APPEND options --toolchain "${TOOLCHAIN}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${example}" -B "${WORK}/example" -G "${GENERATOR}" ${options}
  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/example"
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(status)
  message(FATAL_ERROR "the example host cannot be built:\n${output}")
endif()

function(expect output)
  foreach(text IN LISTS ARGN)
    string(FIND "${output}" "${text}" position)
    if(position EQUAL -1)
      message(FATAL_ERROR "\"${text}\" is missing in:\n${output}")
    endif()
  endforeach()
endfunction()

set(command "GENOSTAT /JOB NAME='example' FILE='${SOURCE}/examples/control.fastq'
  /DESCRIPTIVES VARIABLES=Total_Sequences GC.")
set(program "${WORK}/example/example_host")
if(EMULATOR)
  string(APPEND program ".exe")
endif()
set(ENV{LC_ALL} C.UTF-8)
set(ENV{WINEPATH} "${prefix}/${FOLDER}")
execute_process(COMMAND ${EMULATOR} "${program}" "${prefix}/${FOLDER}" "${command}"
  OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
expect("${output}" "job 'example' queued" "job 'example' finished" "Valid:1 fastQ file(s) detected." "40.6235")
# Runs the example host with the arguments after the first two; it must end with this status and say this.
function(expect_refusal expected text)
  execute_process(COMMAND ${EMULATOR} "${program}" ${ARGN} RESULT_VARIABLE status ERROR_VARIABLE output)
  if(NOT status EQUAL expected)
    message(FATAL_ERROR "the example host ended with ${status}, not ${expected}:\n${output}")
  endif()
  expect("${output}" "${text}")
endfunction()
expect_refusal(2 "Usage: example_host FOLDER COMMANDS")
expect_refusal(1 "example_host: " "${WORK}/nowhere" "${command}")
if(EMULATOR)
  return()
endif()

# It finds its string tables wherever it stands.
execute_process(COMMAND "${prefix}/bin/genostat" run missing.syntax --language de ERROR_VARIABLE output)
expect("${output}" "\"missing.syntax\" kann nicht gelesen werden")

foreach(program IN ITEMS genostat genostat-analysis)
  execute_process(COMMAND "${prefix}/bin/${program}" --version
    OUTPUT_VARIABLE version COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCH "^[^\n]+" version "${version}")
  file(READ "${prefix}/share/man/man1/${program}.1" page)
  string(REPLACE "\\-" "-" page "${page}")
  expect("${page}" "\"${version}\"" ".SH \"EXIT STATUS\"" ".SH \"EXAMPLES\"" "--help" "SEE ALSO")
  # An unknown macro or an unclosed block is a warning.
  execute_process(COMMAND groff -ww -man -Tutf8 "${prefix}/share/man/man1/${program}.1"
    OUTPUT_QUIET ERROR_VARIABLE warnings COMMAND_ERROR_IS_FATAL ANY)
  if(warnings)
    message(FATAL_ERROR "${program}.1:\n${warnings}")
  endif()
endforeach()

# Which shells there are differs; bash is part of every Debian system.
set(completions "${prefix}/share/bash-completion/completions")
execute_process(
  COMMAND bash "${SOURCE}/tests/install/completion_test.sh" "${completions}/genostat" "${completions}/genostat-analysis"
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(status)
  message(FATAL_ERROR "${output}")
endif()
foreach(check IN ITEMS zsh:zsh/vendor-completions/_genostat fish:fish/vendor_completions.d/genostat.fish)
  string(REGEX MATCH "^[a-z]+" shell "${check}")
  string(REPLACE "${shell}:" "" file "${check}")
  find_program(${shell}_program ${shell})
  if(${shell}_program)
    execute_process(COMMAND "${${shell}_program}" -n "${prefix}/share/${file}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
