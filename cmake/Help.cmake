# Help files: every folder of help/ that has a project (.hhp) becomes a compiled help file of the
# project's name, beside the program.
find_program(HELP_COMPILER chmcmd)
find_program(HELP_READER chmls)
find_program(PERL perl)
if(NOT HELP_COMPILER OR NOT HELP_READER OR NOT PERL)
  message(FATAL_ERROR "The help compiler chmcmd with chmls (package fp-utils) or perl is missing; "
                      "run setup/install")
endif()

file(GLOB style CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/help/*.css)
file(GLOB projects CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/help/*/*.hhp)
set(helpFiles "")
foreach(project ${projects})
  cmake_path(GET project STEM name)
  cmake_path(GET project PARENT_PATH folder)
  file(GLOB pages CONFIGURE_DEPENDS ${folder}/*)
  # The compiler takes and leaves everything in the folder that it is started in.
  set(work ${CMAKE_BINARY_DIR}/help/${name})
  set(compiled ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${name}.chm)
  add_custom_command(
    OUTPUT ${compiled}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${work} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
    COMMAND ${CMAKE_COMMAND} -E copy ${pages} ${style} ${work}
    COMMAND ${CMAKE_COMMAND} -E chdir ${work} ${HELP_COMPILER} ${name}.hhp
    COMMAND ${CMAKE_COMMAND} -E chdir ${work} ${HELP_READER} extract ${name}.chm /\#STRINGS strings
    COMMAND ${PERL} ${PROJECT_SOURCE_DIR}/cmake/relative-topics ${work}/${name}.chm ${work}/strings
    COMMAND ${CMAKE_COMMAND} -E copy ${work}/${name}.chm ${compiled}
    DEPENDS ${pages} ${style} ${PROJECT_SOURCE_DIR}/cmake/relative-topics
    COMMENT "Help file ${name}.chm"
    VERBATIM)
  list(APPEND helpFiles ${compiled})
endforeach()
add_custom_target(help_files ALL DEPENDS ${helpFiles})
