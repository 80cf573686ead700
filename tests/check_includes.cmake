# The arrows between the rooms, held against the include lines: the editor sees its services through
# model/ only, nobody below shell/ sees the shell, the model sees nobody but
# base/, and base/ and protocol/ nobody at all.

# A room and what a line of it may not include.
set(forbidden_base "model|protocol|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_protocol "base|model|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_model "protocol|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_logic "protocol|standalone|runner|shell|panels|variables|sequences|workbench")
set(forbidden_panels "protocol|standalone|runner|shell|logic|sequences|workbench")
set(forbidden_variables "protocol|standalone|runner|shell|logic|panels|sequences|workbench")
set(forbidden_sequences "protocol|standalone|runner|shell|logic|panels|workbench")
set(forbidden_shell "protocol|standalone|runner|workbench")
set(forbidden_standalone "runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_runner "base|model|standalone|shell|logic|panels|variables|sequences|workbench")

set(wrong "")
foreach(room base protocol model logic panels variables sequences shell standalone runner)
  file(GLOB_RECURSE files ${ROOT}/${room}/*.h ${ROOT}/${room}/*.cpp)
  list(LENGTH files count)
  if(count EQUAL 0)
    message(FATAL_ERROR "No files found in ${room}: the check would check nothing")
  endif()
  foreach(file ${files})
    file(STRINGS ${file} lines REGEX "^[ \t]*#[ \t]*include[ \t]+\"(${forbidden_${room}})[^\"]*/")
    foreach(line ${lines})
      file(RELATIVE_PATH name ${ROOT} ${file})
      string(APPEND wrong "\n  ${name}: ${line}")
    endforeach()
  endforeach()
endforeach()
if(wrong)
  message(FATAL_ERROR "Includes against the direction of the rooms:${wrong}")
endif()
