# The version resource of a Windows program; its numbers are those of the project.
function(quartino_version program description)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${program}Version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${resource} @ONLY)
  target_sources(${program} PRIVATE ${resource})
endfunction()
