# cmake -DOBJDUMP=... -DCXXFILT=... -DBINARY=... -DEXPORTS=a;b [-DIMPORTS=x;y] -P check_binary.cmake
#
# Fails unless BINARY exports exactly the functions in EXPORTS and, for a Windows DLL, imports
# exactly the DLLs in IMPORTS. Wine brings DLLs of its own (zlib1.dll is one), so a run under Wine
# does not notice a missing one.

get_filename_component(extension "${BINARY}" LAST_EXT)
if(extension STREQUAL ".dll")
  execute_process(COMMAND "${OBJDUMP}" -p "${BINARY}" OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${text}")
  list(TRANSFORM imports REPLACE "DLL Name: " "")
  list(TRANSFORM imports TOLOWER)
  list(SORT imports)
  list(SORT IMPORTS)
  if(NOT imports STREQUAL IMPORTS)
    message(FATAL_ERROR "imported libraries\n  found:    ${imports}\n  expected: ${IMPORTS}")
  endif()
  string(REGEX MATCH "Ordinal/Name Pointer\\] Table.*" text "${text}")
  # Square brackets would hide the list's separators from CMake.
  string(REGEX MATCHALL "\\[ +[0-9]+\\] [^\n]+" found "${text}")
  string(REGEX REPLACE "\\[ +[0-9]+\\] " "" found "${found}")
else()
  execute_process(COMMAND "${OBJDUMP}" -T "${BINARY}" OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[gwu] +D[FO] +\\.[^\n]+" found "${text}")
  list(TRANSFORM found REPLACE "^.* " "")
endif()

execute_process(COMMAND "${CXXFILT}" ${found} OUTPUT_VARIABLE names COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "[abi:cxx11]" "" names "${names}")
string(STRIP "${names}" names)
string(REPLACE "\n" ";" names "${names}")
# A method counts once, whatever its arguments; a destructor has several symbols.
list(TRANSFORM names REPLACE "\\(.*" "")
list(REMOVE_DUPLICATES names)
list(SORT names)
list(SORT EXPORTS)
if(NOT names STREQUAL EXPORTS)
  message(FATAL_ERROR "exported functions\n  found:    ${names}\n  expected: ${EXPORTS}")
endif()
