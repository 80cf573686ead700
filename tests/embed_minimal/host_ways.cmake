# Read by CMake behind the host's project(): the host has ways of its own, which the editor must bear
# and must not change, and gets a person who drives it.
set(CMAKE_CXX_STANDARD 14)
set(CMAKE_AUTOMOC OFF)
add_compile_definitions(QT_NO_KEYWORDS)

function(check_host)
  target_sources(my_host PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/host_person.cpp)
  get_directory_property(options COMPILE_OPTIONS)
  get_directory_property(tests TESTS)
  if(options OR tests OR TARGET workbench OR CMAKE_RUNTIME_OUTPUT_DIRECTORY OR CMAKE_UNITY_BUILD)
    message(FATAL_ERROR "The editor has changed the host's build: ${options} ${tests}")
  endif()
endfunction()
cmake_language(DEFER CALL check_host)
