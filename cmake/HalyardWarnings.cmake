# Warnings are errors on both g++ and clang++.
add_compile_options(-Wall -Wextra -Werror)

# g++ 12 reports -Wrestrict inside std::string's own operator+ when it
# inlines at -O2 and above (GCC bug 105651): a false positive in the
# standard library, not in our code.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  add_compile_options(-Wno-restrict)
endif()

if(HALYARD_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# The fuzz build (scripts/fuzz.sh) instruments every library for libFuzzer's coverage and runs
# under AddressSanitizer and UndefinedBehaviorSanitizer; the fuzz targets add -fsanitize=fuzzer.
if(HALYARD_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                      -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# halyard_layer(NAME KIND DIR LINKS...) builds one layer from every .cpp under
# DIR, so that adding a source file needs no edit here.
function(halyard_layer name kind dir)
  file(GLOB_RECURSE srcs CONFIGURE_DEPENDS ${dir}/*.cpp)
  list(FILTER srcs EXCLUDE REGEX ".*/main\\.cpp$")
  add_library(${name} ${kind} ${srcs})
  # From the tree when building; the installed targets add their include directory.
  target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${HALYARD_ROOT}>)
  target_link_libraries(${name} PUBLIC ${ARGN})
endfunction()
