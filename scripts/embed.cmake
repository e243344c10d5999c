# Turns text files into one C++ source that holds them as string literals.
#   cmake -DOUT=file.cpp -DHEADER=include -DNAME=ns::function -DROOT=folder "-DFILES=a|b|c" -P embed.cmake
# The source defines std::span<const catalog::EmbeddedText> NAME(), entries named by their path below ROOT.
string(REPLACE "|" ";" FILES "${FILES}")
string(REGEX REPLACE "::[^:]+$" "" namespace "${NAME}")
string(REGEX REPLACE "^.*::" "" function "${NAME}")

set(body "// Made at build time from the text files named below.\n#include \"${HEADER}\"\n\nnamespace ${namespace} {\n")
# Arrays of their own, not literals: the linker strews literals among those of the whole program, and then
# these texts come into memory with messages and statements long before anybody reads them.
string(APPEND body "namespace {\n")
set(table "")
set(number 0)
foreach(file IN LISTS FILES)
  file(READ "${ROOT}/${file}" content)
  string(APPEND body "constexpr char text_${number}[] = R\"embedded(${content})embedded\";\n")
  string(APPEND table "{\"${file}\", {text_${number}, sizeof text_${number} - 1}},\n")
  math(EXPR number "${number} + 1")
endforeach()
string(APPEND body "const catalog::EmbeddedText texts[] = {\n${table}")
string(APPEND body "};\n}  // namespace\n")
string(APPEND body "std::span<const catalog::EmbeddedText> ${function}() { return texts; }\n}  // namespace ${namespace}\n")

set(old "")
if(EXISTS "${OUT}")
  file(READ "${OUT}" old)
endif()
if(NOT old STREQUAL body)
  file(WRITE "${OUT}" "${body}")
else()
  file(TOUCH "${OUT}")
endif()
