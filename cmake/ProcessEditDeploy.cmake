# process_edit_deploy(TARGET)
# What the editor and its services look for beside the application goes there when TARGET, the
# host's program, is built: the default tables, and the program that runs applets where the services
# are the stand-alone ones. Called in the folder that TARGET is made in.
function(process_edit_deploy target)
  set(stamp ${CMAKE_CURRENT_BINARY_DIR}/${target}_process_edit_$<CONFIG>.stamp)
  set(folder $<TARGET_FILE_DIR:${target}>)
  file(GLOB tables CONFIGURE_DEPENDS ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../resources/tables/*.json)
  set(runner "")
  set(copy_runner "")
  if(TARGET applet_runner)
    set(runner $<TARGET_FILE:applet_runner>)
    set(copy_runner COMMAND ${CMAKE_COMMAND} -E copy_if_different ${runner} ${folder})
  endif()
  add_custom_command(
    OUTPUT ${stamp}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}/Business/Teststand
    COMMAND ${CMAKE_COMMAND} -E copy_if_different ${tables} ${folder}/Business/Teststand
    ${copy_runner}
    COMMAND ${CMAKE_COMMAND} -E touch ${stamp}
    DEPENDS ${tables} ${runner}
    VERBATIM)
  add_custom_target(${target}_process_edit DEPENDS ${stamp})
  add_dependencies(${target} ${target}_process_edit)
endfunction()
