# Debian wants manuals compressed, and the same every time; the copyright goes with every package.
file(GLOB_RECURSE manuals ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*.1)
foreach(manual ${manuals})
  execute_process(COMMAND gzip -9n ${manual} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(GLOB_RECURSE copyright ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/copyright)
if(NOT manuals OR NOT copyright)
  message(FATAL_ERROR "no manual or no copyright in ${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
endif()
