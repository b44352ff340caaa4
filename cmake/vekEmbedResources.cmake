# Writes a C++ source that registers files as module resources of the platform layer.
# Arguments: OUTPUT, MODULE, TYPE and RESOURCES, id=path entries separated by "|".
set(body "// Generated: do not edit.\n#include \"vekPlatform.h\"\n\nnamespace {\n\n")
set(registrations "")
string(REPLACE "|" ";" RESOURCES "${RESOURCES}")
foreach(entry IN LISTS RESOURCES)
  string(REGEX MATCH "^([0-9]+)=(.*)$" _ "${entry}")
  set(id ${CMAKE_MATCH_1})
  set(path ${CMAKE_MATCH_2})
  file(READ "${path}" hex HEX)
  string(LENGTH "${hex}" hex_length)
  math(EXPR size "${hex_length} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${hex}")
  string(APPEND body "const unsigned char kResource${id}[] = {${bytes}0};\n")
  string(APPEND registrations
         "    vek::platform::RegisterModuleResource(\"${MODULE}\", \"${TYPE}\", ${id}, kResource${id}, ${size});\n")
endforeach()
string(APPEND body "\nstruct Registrar {\n  Registrar() {\n${registrations}  }\n};\nconst Registrar registrar;\n\n}  // namespace\n")
file(WRITE "${OUTPUT}" "${body}")
