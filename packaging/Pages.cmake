# Installs the pages as they lie in the source tree, so that the links between them hold, with the examples.
function(velmora_pages DESTINATION)
  install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${DESTINATION})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION ${DESTINATION})
  install(FILES ${PROJECT_SOURCE_DIR}/samples/schule.velmora DESTINATION ${DESTINATION}/examples)
endfunction()
