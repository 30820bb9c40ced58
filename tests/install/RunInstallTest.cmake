# The install test, run by CTest in script mode: installs the build at BUILD_DIR into
# WORK_DIR/prefix, then builds and runs the consumer in CONSUMER_DIR against it, through the
# CMake package and through pkg-config.
#   -DBUILD_DIR= -DWORK_DIR= -DCONSUMER_DIR= -DCXX= -DGENERATOR= -DSANITIZER_FLAGS=
cmake_minimum_required(VERSION 3.25)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
  set(output "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

foreach(file include/halyard-acl/acl/HalyardAclSm.h include/halyard-acl/platform/acl/AclConfig.h
             lib/cmake/HalyardAcl/HalyardAclConfig.cmake lib/pkgconfig/halyard-acl.pc bin/halyard-acl)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "not installed: ${file}")
  endif()
endforeach()
file(GLOB_RECURSE internal ${prefix}/include/*Internal.h)
if(internal)
  message(FATAL_ERROR "internal headers installed: ${internal}")
endif()

set(expected "libHalyardAclLib: web has 1 rule, to 10.0.1.10/255.255.255.255 eq 80 443\n")

# Through the CMake package.
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/cmake-consumer -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${prefix})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/cmake-consumer)
run(${WORK_DIR}/cmake-consumer/consumer)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "the CMake consumer printed '${output}', expected '${expected}'")
endif()

# Through pkg-config.
set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
run(pkg-config --cflags --libs halyard-acl)
string(STRIP "${output}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} ${CONSUMER_DIR}/main.cpp ${flags} -o ${WORK_DIR}/pkg-config-consumer)
set(ENV{LD_LIBRARY_PATH} ${prefix}/lib)
run(${WORK_DIR}/pkg-config-consumer)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "the pkg-config consumer printed '${output}', expected '${expected}'")
endif()
message(STATUS "installed tree serves both consumers")
