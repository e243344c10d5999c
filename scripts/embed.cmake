# Turns text files into one C++ source that holds them as string literals.
#   cmake -DOUT=file.cpp -DHEADER=include -DNAME=ns::function -DROOT=folder "-DFILES=a|b|c" -P embed.cmake
# The source defines std::span<const catalog::EmbeddedText> NAME(), entries named by their path below ROOT.
string(REPLACE "|" ";" FILES "${FILES}")
string(REGEX REPLACE "::[^:]+$" "" namespace "${NAME}")
string(REGEX REPLACE "^.*::" "" function "${NAME}")

set(body "// Made at build time from the text files named below.\n#include \"${HEADER}\"\n\nnamespace ${namespace} {\n")
string(APPEND body "namespace {\nconst catalog::EmbeddedText texts[] = {\n")
foreach(file IN LISTS FILES)
  file(READ "${ROOT}/${file}" content)
  string(APPEND body "{\"${file}\", R\"embedded(${content})embedded\"},\n")
endforeach()
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
