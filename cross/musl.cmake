# SPDX-License-Identifier: MIT
# Compiles against musl's headers, with those of the compiler, of the kernel and of the dependencies beside them. Taken
# in once the compilers are known; what is compiled is not linked.
execute_process(COMMAND ${CMAKE_C_COMPILER} -print-file-name=include OUTPUT_VARIABLE compiler_headers
    OUTPUT_STRIP_TRAILING_WHITESPACE)
set(others ${PROJECT_BINARY_DIR}/headers)
file(MAKE_DIRECTORY ${others})
foreach(header jansson.h jansson_config.h zlib.h zconf.h uthash.h event2 curl linux asm asm-generic)
    foreach(folder /usr/include /usr/include/${CMAKE_LIBRARY_ARCHITECTURE})
        if(EXISTS ${folder}/${header})
            file(CREATE_LINK ${folder}/${header} ${others}/${header} SYMBOLIC)
        endif()
    endforeach()
endforeach()

set(c_headers "-isystem /usr/include/${CMAKE_SYSTEM_PROCESSOR}-linux-musl -isystem ${compiler_headers} -isystem ${others}")
foreach(folder IN LISTS CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
    if(folder MATCHES "/c\\+\\+/")
        string(APPEND cxx_headers " -isystem ${folder}")
    endif()
endforeach()
string(APPEND CMAKE_C_FLAGS " -nostdinc ${c_headers}")
string(APPEND CMAKE_CXX_FLAGS " -nostdinc -nostdinc++ ${cxx_headers} ${c_headers}"
    " \"-D__GLIBC_PREREQ(major,minor)=0\" -include ${CMAKE_CURRENT_LIST_DIR}/musl_cxx.h")
