# Tests of the run path: protocol, code generator, compiler, runtime. They start applet_runner, which
# stands beside them.
set(run_tests ${CMAKE_CURRENT_LIST_DIR})

pe_add_test(runtime_protocol_test SOURCES ${run_tests}/runtime_protocol_test.cpp
            LINK pe_standalone)
pe_add_test(user_functions_test SOURCES ${run_tests}/user_functions_test.cpp
            LINK pe_standalone)
pe_add_test(runtime_reports_test
            SOURCES ${run_tests}/runtime_reports_test.cpp ${run_tests}/runtime_harness.cpp
                    ${PROJECT_SOURCE_DIR}/runner/waiting_reports.cpp
            LINK pe_standalone)
pe_add_test(runtime_questions_test WIDGETS SOURCES ${run_tests}/runtime_questions_test.cpp
            LINK pe_standalone)
pe_add_test(runtime_variables_test SOURCES ${run_tests}/runtime_variables_test.cpp
            LINK pe_standalone)
foreach(name codegen_test codegen_texts_test)
  pe_add_test(${name} SOURCES ${run_tests}/${name}.cpp LINK pe_standalone)
endforeach()
foreach(name compiler_test compiler_model_test codegen_run_test runtime_run_test
             runtime_functions_test)
  pe_add_test(${name} SOURCES ${run_tests}/${name}.cpp ${run_tests}/runtime_harness.cpp
              LINK pe_standalone)
  add_dependencies(${name} applet_runner)
endforeach()
pe_add_test(runaways SOURCES ${run_tests}/runaways_test.cpp ${run_tests}/runtime_harness.cpp
            LINK pe_standalone)
pe_add_test(known_programs SOURCES ${run_tests}/known_programs_test.cpp
            ${run_tests}/runtime_harness.cpp LINK pe_standalone)
add_dependencies(known_programs applet_runner)
# Applets have Chinese names here, which their files bear.
set_property(TEST compiler_test compiler_model_test codegen_run_test known_programs runtime_run_test
             runtime_functions_test runaways APPEND
             PROPERTY ENVIRONMENT "LANG=C.UTF-8")
