# SPDX-License-Identifier: MIT
# The library, once as objects, then linked as libvexa.so.1 and archived as libvexa.a.

include(cmake/deployment.cmake)
include(cmake/exports.cmake)

find_package(PkgConfig REQUIRED)
find_package(ZLIB REQUIRED)
pkg_check_modules(JANSSON REQUIRED IMPORTED_TARGET jansson)
pkg_check_modules(LIBCURL REQUIRED IMPORTED_TARGET libcurl>=7.85)
pkg_check_modules(LIBEVENT REQUIRED IMPORTED_TARGET libevent_core)

add_library(vexa_warnings INTERFACE)
target_compile_options(vexa_warnings INTERFACE -Wall -Wextra -Wshadow -Wconversion)

add_library(vexa_objects OBJECT)
set_target_properties(vexa_objects PROPERTIES
    POSITION_INDEPENDENT_CODE ON
    C_VISIBILITY_PRESET hidden
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
target_compile_options(vexa_objects PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti -fno-threadsafe-statics>
    -fstack-protector-strong -ffunction-sections -fdata-sections
    $<$<AND:$<NOT:$<CONFIG:Debug>>,$<NOT:$<BOOL:${VEXA_SANITIZED}>>>:-D_FORTIFY_SOURCE=2>)
target_include_directories(vexa_objects
    PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
    PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/generated)
target_link_libraries(vexa_objects PRIVATE vexa_warnings PkgConfig::JANSSON PkgConfig::LIBCURL PkgConfig::LIBEVENT ZLIB::ZLIB)

include(cmake/bus_client.cmake)
target_link_libraries(vexa_objects PRIVATE vexa_bus_client)

# In the order in which a folder may include another: only from those before it.
foreach(folder core config device crypto messaging wireless reporting)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${folder}/CMakeLists.txt)
        add_subdirectory(${folder})
    endif()
endforeach()

set(version_script ${PROJECT_BINARY_DIR}/libvexa.map)
write_version_script(${PROJECT_SOURCE_DIR}/include/libvexa.h ${version_script})

# The C driver links: whatever would need the C++ runtime library is then named by -z defs, at build time.
set(CMAKE_CXX_IMPLICIT_LINK_LIBRARIES "")
add_library(vexa SHARED $<TARGET_OBJECTS:vexa_objects>)
add_library(vexa::vexa ALIAS vexa)
set_target_properties(vexa PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    LINKER_LANGUAGE C
    LINK_DEPENDS ${version_script})
target_include_directories(vexa PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(vexa PRIVATE # of the build only: a program that links the library needs none of them
    $<BUILD_INTERFACE:PkgConfig::JANSSON;PkgConfig::LIBCURL;PkgConfig::LIBEVENT;ZLIB::ZLIB;vexa_bus_client>)
target_link_options(vexa PRIVATE
    # clang leaves the sanitizers' runtime to the program
    -Wl,--version-script=${version_script} $<$<NOT:$<BOOL:${VEXA_FUZZ}>>:-Wl,-z,defs> -Wl,-z,relro -Wl,-z,now -Wl,--as-needed -Wl,--gc-sections
    # The names are common words; a host's own function of the same name must not take over a call inside.
    -Wl,-Bsymbolic-functions)

add_library(vexa_static STATIC $<TARGET_OBJECTS:vexa_objects>)
set_target_properties(vexa_static PROPERTIES OUTPUT_NAME vexa)

install(TARGETS vexa EXPORT vexaTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS vexa_static ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
