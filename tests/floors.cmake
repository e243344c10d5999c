# Arrows point down only: what a folder of src may include, checked in its texts.
#   cmake -DROOT=src -P floors.cmake
# The engine's floors from the lowest; outside the engine only its server is included.
cmake_policy(VERSION 3.25)
set(floors value language function catalog store plan execute server)
set(wrong "")

set(above ${floors})
foreach(floor IN LISTS floors)
  list(POP_FRONT above)
  file(GLOB_RECURSE files ${ROOT}/engine/${floor}/*.h ${ROOT}/engine/${floor}/*.cpp)
  foreach(file IN LISTS files)
    file(STRINGS ${file} includes REGEX "^#include \"")
    foreach(line IN LISTS includes)
      if(NOT line MATCHES "^#include \"engine/([a-z]+)[/.]")
        list(APPEND wrong "${file}: ${line}")
      elseif(CMAKE_MATCH_1 IN_LIST above)
        list(APPEND wrong "${file}: ${line}")
      endif()
    endforeach()
  endforeach()
endforeach()

# Rooms and what they never include.
set(rules
  "db|^(session|catalog|rights|company|rollover|settings|maintenance|cli|ui|app)/|^engine/[^.]*/"
  "tds|^(db|platform|session|catalog|rights|company|rollover|settings|maintenance|cli|ui|app)/|^engine/[^.]*/"
  "platform|^(engine|db|session|catalog|rights|company|rollover|settings|maintenance|cli|ui|app)/"
  "session|^(engine|db/odbc|db/embedded|catalog|rights|company|rollover|settings|maintenance|cli|app)/"
  "catalog|^(engine|db/odbc|db/embedded|rights|company|rollover|settings|maintenance|cli|ui|app)/"
  "rights|^(engine|db/odbc|db/embedded|company|rollover|settings|maintenance|cli|app)/"
  "company|^(engine|db/odbc|db/embedded|rollover|maintenance|cli|app)/"
  "cli|^(engine|db/odbc|db/embedded|ui|app)/")
foreach(rule IN LISTS rules)
  string(REGEX MATCH "^[a-z]+" room "${rule}")
  string(REGEX REPLACE "^[a-z]+\\|" "" forbidden "${rule}")
  file(GLOB_RECURSE files ${ROOT}/${room}/*.h ${ROOT}/${room}/*.cpp)
  list(FILTER files EXCLUDE REGEX "/${room}/ui/")
  foreach(file IN LISTS files)
    file(STRINGS ${file} includes REGEX "^#include [\"<]")
    foreach(line IN LISTS includes)
      string(REGEX REPLACE "^#include [\"<]([^\">]*)[\">].*" "\\1" path "${line}")
      if(path MATCHES "${forbidden}" OR path MATCHES "^Q[A-Z]")
        list(APPEND wrong "${file}: ${line}")
      endif()
    endforeach()
  endforeach()
endforeach()

if(wrong)
  list(JOIN wrong "\n" text)
  message(FATAL_ERROR "includes that point up:\n${text}")
endif()
