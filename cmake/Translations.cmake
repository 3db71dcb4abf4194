# The catalogues of texts as the programs read them, in the build tree where its programs look.
find_package(Qt6 6.4 REQUIRED COMPONENTS LinguistTools)
file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/translations)
set(catalogues)
foreach(language en de)
  set(source ${PROJECT_SOURCE_DIR}/data/translations/quav_${language}.ts)
  set(catalogue ${PROJECT_BINARY_DIR}/translations/quav_${language}.qm)
  add_custom_command(OUTPUT ${catalogue}
                     COMMAND Qt6::lrelease -silent -nounfinished ${source} -qm ${catalogue}
                     DEPENDS ${source} VERBATIM)
  list(APPEND catalogues ${catalogue})
endforeach()
add_custom_target(translations ALL DEPENDS ${catalogues})
install(FILES ${catalogues} DESTINATION ${CMAKE_INSTALL_DATADIR}/quav/translations)
