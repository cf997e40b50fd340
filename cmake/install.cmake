# SPDX-License-Identifier: MIT
# What other projects find of the library: the header, libvexa.pc, the CMake package, the manual.

include(CMakePackageConfigHelpers)

set(package_config_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH up_to_prefix /${package_config_dir} /)
string(REGEX REPLACE "/$" "" up_to_prefix "${up_to_prefix}")
set(required_packages "jansson libcurl libevent_core zlib") # of who links the static library
set(private_libraries "")
if(bus_client STREQUAL platform)
    set(private_libraries "-lubus -lblobmsg_json -lubox")
endif()
configure_file(packaging/libvexa.pc.in libvexa.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/libvexa.pc DESTINATION ${package_config_dir})

set(cmake_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/vexa)
configure_package_config_file(packaging/vexaConfig.cmake.in vexaConfig.cmake INSTALL_DESTINATION ${cmake_package_dir}
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(vexaConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vexaConfig.cmake ${PROJECT_BINARY_DIR}/vexaConfigVersion.cmake
    DESTINATION ${cmake_package_dir})
install(EXPORT vexaTargets NAMESPACE vexa:: DESTINATION ${cmake_package_dir})

install(FILES include/libvexa.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES docs/libvexa.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} USE_SOURCE_PERMISSIONS)
