# Help: every folder of help/ that has a project (.hhp) becomes a compiled help file and a manual for
# printing, both of the project's name, beside the program.
find_program(HELP_COMPILER chmcmd)
find_program(HELP_READER chmls)
find_program(PERL perl)
if(NOT HELP_COMPILER OR NOT HELP_READER OR NOT PERL)
  message(FATAL_ERROR "The help compiler chmcmd with chmls (package fp-utils) or perl is missing; "
                      "run setup/install")
endif()

file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/help/*.css
     ${PROJECT_SOURCE_DIR}/docs/pictures/*.png)
file(GLOB projects CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/help/*/*.hhp)
set(helpFiles "")
set(bin ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
set(maker ${PROJECT_SOURCE_DIR}/cmake/make-help)
foreach(project ${projects})
  cmake_path(GET project STEM name)
  cmake_path(GET project PARENT_PATH folder)
  file(GLOB pages CONFIGURE_DEPENDS ${folder}/*)
  # The program's pictures in the language of the pages.
  set(pictures ${PROJECT_SOURCE_DIR}/docs/pictures/)
  if(folder MATCHES "/eng$")
    string(APPEND pictures english-)
  endif()
  # The compiler takes and leaves everything in the folder that it is started in.
  set(work ${CMAKE_BINARY_DIR}/help/${name})
  file(MAKE_DIRECTORY ${work} ${bin})
  add_custom_command(
    OUTPUT ${bin}/${name}.chm ${bin}/${name}.html
    COMMAND ${PERL} ${maker} ${folder} ${pictures} ${PROJECT_VERSION} "$ENV{SOURCE_DATE_EPOCH}" ${bin}
    WORKING_DIRECTORY ${work}
    DEPENDS ${pages} ${sources} ${maker}
    COMMENT "Help file ${name}.chm and manual ${name}.html"
    VERBATIM)
  list(APPEND helpFiles ${bin}/${name}.chm)
endforeach()
add_custom_target(help_files ALL DEPENDS ${helpFiles})
