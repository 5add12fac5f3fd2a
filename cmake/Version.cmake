# One manifest for all programs, of the project's version too. The resource names the manifest's state:
# a change of it is then compiled in.
configure_file(${PROJECT_SOURCE_DIR}/cmake/Quartino.manifest.in ${CMAKE_BINARY_DIR}/Quartino.manifest @ONLY)
file(SHA256 ${CMAKE_BINARY_DIR}/Quartino.manifest state)
set(quartino_manifest ${CMAKE_BINARY_DIR}/Manifest.rc)
file(CONFIGURE OUTPUT ${quartino_manifest} @ONLY
     CONTENT "// @state@\n#include <windows.h>\n\n1 RT_MANIFEST \"@CMAKE_BINARY_DIR@/Quartino.manifest\"\n")

# The version resource of a Windows program; its numbers are those of the project.
function(quartino_version program description)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/${program}Version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/Version.rc.in ${resource} @ONLY)
  target_sources(${program} PRIVATE ${resource})
endfunction()
