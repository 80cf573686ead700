# The arrows between the rooms, held against the include lines: the editor sees its services through
# model/ only, nobody below shell/ sees the shell, the model sees nobody but
# base/, and base/ and protocol/ nobody at all. And that documents change through edits/ alone.

cmake_policy(VERSION 3.16)

# A room and what a line of it may not include.
set(forbidden_base "edits|model|protocol|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_protocol "edits|base|model|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_model "edits|protocol|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_edits "protocol|standalone|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_logic "protocol|standalone|runner|shell|panels|variables|sequences|workbench")
set(forbidden_panels "protocol|standalone|runner|shell|logic|sequences|workbench")
set(forbidden_variables "protocol|standalone|runner|shell|logic|panels|sequences|workbench")
set(forbidden_sequences "protocol|standalone|runner|shell|logic|panels|workbench")
set(forbidden_shell "protocol|standalone|runner|workbench")
set(forbidden_standalone "edits|runner|shell|logic|panels|variables|sequences|workbench")
set(forbidden_runner "edits|base|model|standalone|shell|logic|panels|variables|sequences|workbench")

set(wrong "")
foreach(room base protocol model edits logic panels variables sequences shell standalone runner)
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
# The same within a room: a folder, and what of its own room it may not include.
set(folders
  "logic/rows:(edit|look|palette|run)/|Logic"
  "logic/look:(edit|palette|run)/|Logic"
  "logic/edit:(palette|run)/|Logic"
  "logic/palette:(edit|run)/|Logic"
  "logic/run:(edit|palette)/|Logic"
  "shell/bridge:(documents|run)/|ProcessEdit(Widget|Parts)|WidgetBuildView"
  "shell/documents:run/|ProcessEdit(Widget|Parts)|WidgetBuildView"
  "shell/run:ProcessEdit(Widget|Parts)|WidgetBuildView"
  "standalone/model_service/json:(documents|facade|stores|texts)/"
  "standalone/model_service/documents:(facade|stores|texts)/"
  "standalone/model_service/stores:(facade|texts)/"
  "standalone/model_service/texts:facade/")
foreach(entry ${folders})
  string(REGEX MATCH "^((.+)/[a-z_]+):(.*)$" entry "${entry}")
  set(folder ${CMAKE_MATCH_1})
  set(forbidden "#include \"${CMAKE_MATCH_2}/(${CMAKE_MATCH_3})")
  file(GLOB files ${ROOT}/${folder}/*.h ${ROOT}/${folder}/*.cpp)
  if(NOT files)
    message(FATAL_ERROR "No files found in ${folder}: the check would check nothing")
  endif()
  foreach(file ${files})
    file(STRINGS ${file} lines REGEX "${forbidden}")
    if(lines)
      file(RELATIVE_PATH name ${ROOT} ${file})
      string(APPEND wrong "\n  ${name}: ${lines}")
    endif()
  endforeach()
endforeach()
# A document changes through edits/ only. What loads, saves and forgets one is no change of it.
string(CONCAT changing
  "[^a-zA-Z](processedit|process_edit)::(create[A-Z]|"
  "(add|remove)QuickStepInfo\\(|(add|remove|rename)ProcessTemplate\\(|"
  "update(Process|Sequence|Variable|ProcessInfoIndex)\\(|"
  "remove(Process|Sequence|Variables|AllProcessBySequenceID|AllSequenceByAppName|"
  "AllVarBySequenceId)\\(|(add|paste)Variable\\()")
set(loading logic/rows/flow_loader.cpp shell/ShownDocument.cpp shell/documents/variable_use.cpp)
foreach(room logic panels variables sequences shell)
  file(GLOB_RECURSE files ${ROOT}/${room}/*.h ${ROOT}/${room}/*.cpp)
  foreach(file ${files})
    file(RELATIVE_PATH name ${ROOT} ${file})
    file(STRINGS ${file} lines REGEX "${changing}")
    if(lines AND NOT name IN_LIST loading)
      string(APPEND wrong "\n  ${name}: ${lines}")
    endif()
  endforeach()
endforeach()

if(wrong)
  message(FATAL_ERROR "Against the direction of the rooms:${wrong}")
endif()
