# What `cmake --install` gives: the back-end library libHalyardAclLib and the platform library it
# is written against (shared, with RUNPATHs that find each other), the headers a back-end
# developer includes ("acl/HalyardAclSm.h", "platform/acl/AclConfig.h", ... under
# include/halyard-acl), the CMake package HalyardAcl (targets HalyardAcl::HalyardAclLib and
# HalyardAcl::HalyardPlatform), the pkg-config file halyard-acl.pc, the halyard-acl tool and
# its examples.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(HALYARD_INSTALL_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR}/halyard-acl)
set(HALYARD_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/HalyardAcl)

set_target_properties(HalyardPlatform HalyardAclLib PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(halyard-acl PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")

# Libraries built with the sanitizers need them in every program that links them.
set(HALYARD_SANITIZER_FLAGS "")
if(HALYARD_SANITIZE)
  set(HALYARD_SANITIZER_FLAGS "-fsanitize=address,undefined")
  target_link_options(HalyardPlatform INTERFACE
                      $<INSTALL_INTERFACE:${HALYARD_SANITIZER_FLAGS}>)
endif()

install(TARGETS HalyardPlatform HalyardAclLib EXPORT HalyardAclTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${HALYARD_INSTALL_INCLUDEDIR})
install(TARGETS halyard-acl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Public headers only: the back-end's internal headers end in Internal.h.
install(DIRECTORY ${HALYARD_ROOT}/platform/ DESTINATION ${HALYARD_INSTALL_INCLUDEDIR}/platform
        FILES_MATCHING PATTERN "*.h")
install(DIRECTORY ${HALYARD_ROOT}/acl/ DESTINATION ${HALYARD_INSTALL_INCLUDEDIR}/acl
        FILES_MATCHING PATTERN "*.h" PATTERN "*Internal.h" EXCLUDE)
install(DIRECTORY ${HALYARD_ROOT}/examples/
        DESTINATION ${CMAKE_INSTALL_DATADIR}/halyard-acl/examples)

install(EXPORT HalyardAclTargets NAMESPACE HalyardAcl:: DESTINATION ${HALYARD_INSTALL_CMAKEDIR})
configure_package_config_file(${HALYARD_ROOT}/cmake/HalyardAclConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/HalyardAclConfig.cmake
                              INSTALL_DESTINATION ${HALYARD_INSTALL_CMAKEDIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/HalyardAclConfigVersion.cmake
                                 VERSION ${PROJECT_VERSION} COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/HalyardAclConfig.cmake
              ${CMAKE_BINARY_DIR}/HalyardAclConfigVersion.cmake
        DESTINATION ${HALYARD_INSTALL_CMAKEDIR})

file(RELATIVE_PATH HALYARD_PC_TO_PREFIX "/prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/prefix")
string(REGEX REPLACE "/$" "" HALYARD_PC_TO_PREFIX "${HALYARD_PC_TO_PREFIX}")
configure_file(${HALYARD_ROOT}/cmake/halyard-acl.pc.in ${CMAKE_BINARY_DIR}/halyard-acl.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/halyard-acl.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The install test: install this build into a directory of its own, then build and run a small
# back-end consumer against it, once through find_package(HalyardAcl) and once through
# pkg-config.
if(HALYARD_TESTS)
  add_test(NAME install_consumer
           COMMAND ${CMAKE_COMMAND}
                   -DBUILD_DIR=${CMAKE_BINARY_DIR}
                   -DWORK_DIR=${CMAKE_BINARY_DIR}/install-test
                   -DCONSUMER_DIR=${HALYARD_ROOT}/tests/install/consumer
                   -DCXX=${CMAKE_CXX_COMPILER}
                   -DGENERATOR=${CMAKE_GENERATOR}
                   -DSANITIZER_FLAGS=${HALYARD_SANITIZER_FLAGS}
                   -P ${HALYARD_ROOT}/tests/install/RunInstallTest.cmake)
  set_tests_properties(install_consumer PROPERTIES LABELS install)
endif()
