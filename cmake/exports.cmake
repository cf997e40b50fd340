# SPDX-License-Identifier: MIT
# The public header is the one list of exported names: each declaration that begins with VEXA_API.

function(write_version_script header script)
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
    file(READ ${header} text)
    string(REPLACE ";" "@" text "${text}") # a list would be split there
    string(REGEX MATCHALL "\nVEXA_API [^@]*@" declarations "${text}")
    foreach(declaration IN LISTS declarations)
        if(NOT declaration MATCHES "^[^([]*[ *]([A-Za-z_0-9]+)[[(@]")
            message(FATAL_ERROR "no name found in: ${declaration}")
        endif()
        string(APPEND names "        ${CMAKE_MATCH_1};\n")
    endforeach()
    file(CONFIGURE OUTPUT ${script} CONTENT "VEXA_1.0 {\n    global:\n@names@    local: *;\n};\n" @ONLY)
endfunction()
