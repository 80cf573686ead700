# What every target of the project shares: language level, warnings, sanitizers, compiler cache and
# the two precompiled headers (Qt Core alone, and Qt with widgets).

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
set(CMAKE_AUTOUIC_SEARCH_PATHS ${PROJECT_SOURCE_DIR}/resources/forms)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${CCACHE_PROGRAM})
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual)
if(PROCESS_EDIT_WERROR)
  add_compile_options(-Werror)
endif()
if(PROCESS_EDIT_SANITIZE)
  add_compile_options(-fsanitize=${PROCESS_EDIT_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PROCESS_EDIT_SANITIZE})
endif()
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS
                        QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
include_directories(${PROJECT_SOURCE_DIR})

# pe_add_library(NAME [WIDGETS] SOURCES ... [LINK ...])
# A static library of one room. WIDGETS gives it Qt Widgets and that precompiled header.
function(pe_add_library name)
  cmake_parse_arguments(arg "WIDGETS" "" "SOURCES;LINK" ${ARGN})
  add_library(${name} STATIC ${arg_SOURCES})
  pe_set_up(${name} "${arg_WIDGETS}" "${arg_LINK}")
endfunction()

# pe_add_executable(NAME [WIDGETS] SOURCES ... [LINK ...])
function(pe_add_executable name)
  cmake_parse_arguments(arg "WIDGETS" "" "SOURCES;LINK" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  pe_set_up(${name} "${arg_WIDGETS}" "${arg_LINK}")
endfunction()

function(pe_set_up name widgets link)
  if(widgets)
    target_link_libraries(${name} PUBLIC Qt5::Widgets ${link})
    set(header ${PROJECT_SOURCE_DIR}/cmake/qt_widgets_pch.h)
    set(owner pe_pch_widgets)
  else()
    target_link_libraries(${name} PUBLIC Qt5::Core ${link})
    set(header ${PROJECT_SOURCE_DIR}/cmake/qt_core_pch.h)
    set(owner pe_pch_core)
  endif()
  if(NOT TARGET ${owner})
    file(WRITE ${PROJECT_BINARY_DIR}/${owner}.cpp "")
    add_library(${owner} STATIC ${PROJECT_BINARY_DIR}/${owner}.cpp)
    set_target_properties(${owner} PROPERTIES AUTOMOC OFF AUTOUIC OFF)
    if(widgets)
      target_link_libraries(${owner} PRIVATE Qt5::Widgets)
    else()
      target_link_libraries(${owner} PRIVATE Qt5::Core)
    endif()
    target_precompile_headers(${owner} PRIVATE ${header})
  endif()
  target_precompile_headers(${name} REUSE_FROM ${owner})
endfunction()
