# Language libraries: a DLL of string resources and nothing else for each file CODE.txt.
#
# quartino_language(CODE.txt FOLDER) builds zorvinta_CODE.dll there.
function(quartino_language source folder)
  cmake_path(GET source STEM code)
  set(resource ${CMAKE_CURRENT_BINARY_DIR}/languages/${code}.rc)
  add_custom_command(
    OUTPUT ${resource}
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${source} -DRESOURCE=${resource}
            -P ${PROJECT_SOURCE_DIR}/cmake/LanguageResource.cmake
    DEPENDS ${source} ${PROJECT_SOURCE_DIR}/cmake/LanguageResource.cmake
    COMMENT "Strings of language ${code}"
    VERBATIM)
  set(library zorvinta_${code})
  add_library(${library} MODULE ${resource})
  set_target_properties(${library} PROPERTIES PREFIX "" LINKER_LANGUAGE CXX
                        LIBRARY_OUTPUT_DIRECTORY ${folder})
  set_source_files_properties(${resource} PROPERTIES COMPILE_OPTIONS "-c;65001")
  target_link_options(${library} PRIVATE -nostdlib -Wl,--entry=0 -Wl,--exclude-all-symbols -s)
endfunction()

file(GLOB languages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/lang/*.txt)
add_custom_target(languages)
foreach(language ${languages})
  quartino_language(${language} ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  cmake_path(GET language STEM code)
  add_dependencies(languages zorvinta_${code})
endforeach()
