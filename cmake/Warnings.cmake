# One set of warnings for all our targets; they are errors.
add_library(quartino_options INTERFACE)
target_compile_options(quartino_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow
                       -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
target_include_directories(quartino_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(WIN32)
  target_compile_definitions(quartino_options INTERFACE UNICODE _UNICODE NOMINMAX
                             WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00 WINVER=0x0A00)
  target_compile_options(quartino_options INTERFACE -fstack-protector-strong)
  # Windows 10 is the oldest system that is meant.
  target_link_options(quartino_options INTERFACE -static -municode -fstack-protector-strong
                      -Wl,--tsaware,--nxcompat,--dynamicbase,--high-entropy-va
                      -Wl,--major-os-version,10,--minor-os-version,0
                      -Wl,--major-subsystem-version,10,--minor-subsystem-version,0)
endif()

if(QUARTINO_SANITIZE)
  target_compile_options(quartino_options INTERFACE -fsanitize=address,undefined
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quartino_options INTERFACE -fsanitize=address,undefined)
endif()

# Whole numbers that lose digits or overflow; what may, stands in the list.
if(QUARTINO_ANALYSE STREQUAL "integer")
  set(allowed ${PROJECT_SOURCE_DIR}/tests/night/integers-allowed)
  target_compile_options(quartino_options INTERFACE -fsanitize=integer,implicit-conversion
                         -fno-sanitize-recover=all -fsanitize-ignorelist=${allowed})
  target_link_options(quartino_options INTERFACE -fsanitize=integer,implicit-conversion)
elseif(QUARTINO_ANALYSE STREQUAL "coverage")
  # Without inlining, so that a line stands where it was written.
  target_compile_options(quartino_options INTERFACE --coverage -O0 -fprofile-update=atomic)
  target_link_options(quartino_options INTERFACE --coverage)
endif()

# Every branch tells the fuzzer that it was taken.
if(QUARTINO_FUZZ)
  target_compile_options(quartino_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                         -fno-sanitize-recover=all)
  target_link_options(quartino_options INTERFACE -fsanitize=address,undefined)
endif()
