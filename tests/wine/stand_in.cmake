# kelvane_stand_in_sondrel(TARGET ABOUT FOLDER SOURCES...): a receiver component under the real one's
# file name, to lie beside a copy of the program. It is never registered.
function(kelvane_stand_in_sondrel target about folder)
  set(name Sondrel)
  set(type_library ${PROJECT_BINARY_DIR}/contract/${name}.tlb)
  configure_file(${PROJECT_SOURCE_DIR}/contract/win32/server/component.rc.in ${target}.rc @ONLY)
  set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${target}.rc PROPERTIES
    OBJECT_DEPENDS ${type_library})
  add_library(${target} SHARED ${ARGN} ${PROJECT_SOURCE_DIR}/tests/wine/stand_in.def
    ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME Sondrel
    RUNTIME_OUTPUT_DIRECTORY ${folder} ARCHIVE_OUTPUT_DIRECTORY ${folder})
  target_link_libraries(${target} PRIVATE kelvane_com_server)
endfunction()
