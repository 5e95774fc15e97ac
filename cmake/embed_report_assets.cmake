# Builds what HTML reports carry along: cmake -DWEB=folder -DCHARTS=ON|OFF -DOUTPUT=folder -DSECTION=directive -P this file
#
# WEB holds report.css, report.js, charts.js and, where CHARTS is on, the installed npm packages. OUTPUT gets one script
# for the charts with the licences of all that is in it, the licences alone, and report_assets.cpp, which carries the
# bytes. Where CHARTS is off the script says so in each chart's place.
# SECTION is the assembler's directive for constant data.

cmake_minimum_required(VERSION 3.25)

# The content of a Content-Security-Policy source: 'sha256-<base64>'.
function(policy_source variable file)
  file(SHA256 "${file}" hex)
  set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(base64 "")
  # 12 bits are three digits here and two there; the two digits added make the last one the padding.
  foreach(position RANGE 0 63 3)
    string(SUBSTRING "${hex}00" ${position} 3 digits)
    math(EXPR high "0x${digits} >> 6")
    math(EXPR low "0x${digits} & 63")
    string(SUBSTRING "${alphabet}" ${high} 1 first)
    string(SUBSTRING "${alphabet}" ${low} 1 second)
    string(APPEND base64 "${first}${second}")
  endforeach()
  string(LENGTH "${base64}" length)
  math(EXPR length "${length} - 1")
  string(SUBSTRING "${base64}" 0 ${length} base64)
  set(${variable} "'sha256-${base64}='" PARENT_SCOPE)
endfunction()

function(read_script variable file)
  file(READ "${file}" text)
  string(REGEX REPLACE "\n//# sourceMappingURL=[^\n]*" "" text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# Its one import is what the library before it offers.
function(read_interpreter variable file)
  read_script(text "${file}")
  string(REGEX REPLACE "import ({[^}]*}) from 'vega-util';" "const \\1 = vega;" inner "${text}")
  string(REPLACE "export { expression as expressionInterpreter };" "vega.expressionInterpreter = expression;"
         module "${inner}")
  if(inner STREQUAL text OR module STREQUAL inner OR module MATCHES "\n(import|export) ")
    message(FATAL_ERROR "${file} imports or exports other names than expected; read_interpreter() needs to follow")
  endif()
  set(${variable} "(() => {\n\"use strict\";\n${module}\n})();" PARENT_SCOPE)
endfunction()

# Each text once, below the names of the packages that share it.
function(collect_licences variable)
  file(GLOB files "${WEB}/node_modules/vega*/LICENSE*" "${WEB}/node_modules/d3-*/LICENSE*"
       "${WEB}/node_modules/topojson-client/LICENSE*" "${WEB}/node_modules/internmap/LICENSE*"
       "${WEB}/node_modules/delaunator/LICENSE*" "${WEB}/node_modules/robust-predicates/LICENSE*")
  set(keys "")
  foreach(file IN LISTS files)
    file(SHA256 "${file}" key)
    cmake_path(GET file PARENT_PATH folder)
    cmake_path(GET folder FILENAME package)
    if(key IN_LIST keys)
      string(APPEND names_${key} ", ${package}")
    else()
      list(APPEND keys ${key})
      set(names_${key} "${package}")
      file(READ "${file}" text_${key})
    endif()
  endforeach()
  set(all "")
  foreach(key IN LISTS keys)
    string(REPLACE "\r" "" text "${text_${key}}")
    string(STRIP "${text}" text)
    string(APPEND all "${names_${key}}\n\n${text}\n\n")
  endforeach()
  set(${variable} "${all}" PARENT_SCOPE)
endfunction()

# The chart library, its interpreter of expressions, and what draws with them.
function(join_charts variable licences)
  if(licences MATCHES "\\*/")
    message(FATAL_ERROR "a licence ends the comment that it stands in")
  endif()
  read_script(vega "${WEB}/node_modules/vega/build/vega.min.js")
  read_script(vega_lite "${WEB}/node_modules/vega-lite/build/vega-lite.min.js")
  read_interpreter(interpreter "${WEB}/node_modules/vega-interpreter/build/vega-interpreter.js")
  file(READ "${WEB}/charts.js" charts)
  set(${variable} "/*!\n${licences}*/\n${vega}\n${vega_lite}\n${interpreter}\n${charts}" PARENT_SCOPE)
endfunction()

if(CHARTS)
  collect_licences(licences)
  join_charts(charts "${licences}")
else()
  set(licences "")
  file(READ "${WEB}/no_charts.js" charts)
endif()
file(WRITE "${OUTPUT}/report_licences.txt" "${licences}")
file(WRITE "${OUTPUT}/report_charts.js" "${charts}")

set(definitions "")
set(declarations "")
set(assets "")
foreach(asset IN ITEMS "style ${WEB}/report.css" "script ${WEB}/report.js" "charts ${OUTPUT}/report_charts.js")
  string(REGEX MATCH "^[^ ]+" name "${asset}")
  string(REGEX REPLACE "^[^ ]+ " "" file "${asset}")
  file(READ "${file}" text)
  string(TOLOWER "${text}" text)
  # A browser would see the end of the element there, or other bytes than those that were hashed.
  if(text MATCHES "</s(cript|tyle)|<!--|<script|\r")
    message(FATAL_ERROR "${file} holds \"${CMAKE_MATCH_0}\" and cannot stand inside a page")
  endif()
  file(SIZE "${file}" size)
  policy_source(policy "${file}")
  string(APPEND definitions "genostat_report_${name}: .incbin \"${file}\"\n")
  string(APPEND declarations "extern const char genostat_report_${name}[];\n")
  string(APPEND assets "    {std::string_view(genostat_report_${name}, ${size}), \"${policy}\"},\n")
endforeach()
file(WRITE "${OUTPUT}/report_assets.cpp" "// Made by cmake/embed_report_assets.cmake.
#include \"standalone/output/report_assets.h\"

asm(R\"asm(
${SECTION}
${definitions}.text
)asm\");

extern \"C\" {
${declarations}}

namespace genostat::standalone {

const ReportAssets& reportAssets() {
  static const ReportAssets assets = {
${assets}  };
  return assets;
}

}  // namespace genostat::standalone
")
