# Tests of the model service. They read the default tables from the sources.
set(model_tests ${CMAKE_CURRENT_LIST_DIR})

foreach(name model_json_test model_tree_test model_variables_test model_texts_test
             model_library_test)
  pe_add_test(${name} SOURCES ${model_tests}/${name}.cpp ${model_tests}/model_samples.cpp
              LINK pe_standalone)
endforeach()
target_compile_definitions(model_library_test
  PRIVATE PE_TABLES_FOLDER="${PROJECT_SOURCE_DIR}/resources/tables")
