# What every target of the project shares: language level, warnings, sanitizers, and what makes the
# build fast. docs/architecture.md tells why each of them is there.
#
# All of it counts for the folders of the project alone. What a host needs for the headers, folder
# and language level, is what the libraries themselves demand (pe_set_up).

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_AUTOUIC ON)
# No header that moc reads is made by a target that is linked.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
set(CMAKE_AUTOUIC_SEARCH_PATHS ${PROJECT_SOURCE_DIR}/resources/forms)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)
set(CMAKE_UNITY_BUILD ${PROCESS_EDIT_UNITY})

foreach(linker mold lld)
  find_program(PROCESS_EDIT_${linker} ld.${linker})
  if(PROCESS_EDIT_${linker})
    add_link_options(-fuse-ld=${linker})
    break()
  endif()
endforeach()

add_compile_options(-Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual)
if(PROCESS_EDIT_UNITY AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # It takes the sources of a batch for headers.
  add_compile_options(-Wno-subobject-linkage)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Qt's own macros fall short of what it asks for.
  add_compile_options(-Wno-gnu-zero-variadic-macro-arguments)
endif()
if(PROCESS_EDIT_WERROR)
  add_compile_options(-Werror)
endif()
if(PROCESS_EDIT_SANITIZE)
  add_compile_options(-fsanitize=${PROCESS_EDIT_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${PROCESS_EDIT_SANITIZE})
endif()
if(PROCESS_EDIT_SANITIZE MATCHES "thread")
  add_library(pe_tsan_qt OBJECT ${PROJECT_SOURCE_DIR}/cmake/tsan_qt_locks.cpp)
  set_target_properties(pe_tsan_qt PROPERTIES AUTOMOC OFF AUTOUIC OFF)
endif()
add_compile_definitions(QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_DEPRECATED_WARNINGS
                        QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
# A host's own wish, which it has for itself: sources here use the keywords, the headers that a host
# includes don't.
get_directory_property(definitions COMPILE_DEFINITIONS)
list(REMOVE_ITEM definitions QT_NO_KEYWORDS)
set_directory_properties(PROPERTIES COMPILE_DEFINITIONS "${definitions}")

# pe_add_library(NAME [WIDGETS] SOURCES ... [LINK ...])
# A static library of one room. WIDGETS gives it Qt Widgets, else it has Qt Core alone.
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
  target_include_directories(${name} PUBLIC ${process_edit_SOURCE_DIR})
  target_compile_features(${name} PUBLIC cxx_std_17)
  # Where most of the time goes into Qt's headers the batches are larger.
  if(widgets)
    target_link_libraries(${name} PUBLIC Qt5::Widgets ${link})
    set_target_properties(${name} PROPERTIES UNITY_BUILD_BATCH_SIZE 20)
  else()
    target_link_libraries(${name} PUBLIC Qt5::Core ${link})
    set_target_properties(${name} PROPERTIES UNITY_BUILD_BATCH_SIZE 10)
  endif()
  get_target_property(type ${name} TYPE)
  if(TARGET pe_tsan_qt AND type STREQUAL "EXECUTABLE")
    target_link_libraries(${name} PRIVATE pe_tsan_qt ${CMAKE_DL_LIBS})
  endif()
endfunction()
