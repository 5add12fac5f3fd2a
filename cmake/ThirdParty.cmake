# GoogleTest is built from Debian's source package, so that the same source serves the native and
# the cross build. The readers of JSON and XML are headers only and are linked into a folder of their
# own: the system's include folder must never reach the cross compiler.
set(GOOGLETEST_SOURCE /usr/src/googletest CACHE PATH "Source of GoogleTest")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
if(NOT EXISTS ${GOOGLETEST_SOURCE}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's source is missing in ${GOOGLETEST_SOURCE}; run setup/install")
endif()
add_subdirectory(${GOOGLETEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
# It is compiled for every preset and hardly runs.
foreach(library gtest gmock)
  target_compile_options(${library} PRIVATE -O0)
endforeach()

file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/third_party)
set(NLOHMANN_INCLUDE /usr/include/nlohmann CACHE PATH "Folder of nlohmann/json's headers")
file(CREATE_LINK ${NLOHMANN_INCLUDE} ${CMAKE_BINARY_DIR}/third_party/nlohmann SYMBOLIC)
add_library(nlohmann_json INTERFACE)
target_include_directories(nlohmann_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)
set(RAPIDXML_INCLUDE /usr/include/rapidxml CACHE PATH "Folder of RapidXml's headers")
file(CREATE_LINK ${RAPIDXML_INCLUDE} ${CMAKE_BINARY_DIR}/third_party/rapidxml SYMBOLIC)
add_library(rapidxml INTERFACE)
target_include_directories(rapidxml SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)

set(CLI11_INCLUDE /usr/include/CLI CACHE PATH "Folder of CLI11's headers")
file(CREATE_LINK ${CLI11_INCLUDE} ${CMAKE_BINARY_DIR}/third_party/CLI SYMBOLIC)
add_library(cli11 INTERFACE)
target_include_directories(cli11 SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)
