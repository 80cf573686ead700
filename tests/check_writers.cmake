# Files are replaced in one way and read whole in one way, base/file_writing.h and
# base/file_reading.h: no other source opens one. A run's record, which is no document and only
# grows, has the system's own calls, standalone/runtime/run_record_posix.cpp. The child's runtime,
# which has no Qt, and the tool that renders icons at build time are none of the editor's.

set(wrong "")
set(count 0)
foreach(room base model logic panels variables sequences shell standalone workbench)
  file(GLOB_RECURSE files ${ROOT}/${room}/*.h ${ROOT}/${room}/*.cpp)
  foreach(file ${files})
    math(EXPR count "${count} + 1")
    file(RELATIVE_PATH name ${ROOT} ${file})
    if(name MATCHES "^base/(file_writing|regular_file_posix)\\.cpp$")
      continue()
    endif()
    file(STRINGS ${file} lines
         REGEX "QSaveFile|[^a-zA-Z]WriteOnly|QIODevice::(ReadOnly|ReadWrite|Append)|[io]?fstream|fopen *\\(")
    foreach(line ${lines})
      string(APPEND wrong "\n  ${name}: ${line}")
    endforeach()
  endforeach()
endforeach()
if(count LESS 100)
  message(FATAL_ERROR "Only ${count} files found: the check would check nothing")
endif()
if(wrong)
  message(FATAL_ERROR "Files opened elsewhere than in base/:${wrong}")
endif()
