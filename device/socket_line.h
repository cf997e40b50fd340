// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <string_view>

// A line of one of the kernel's socket tables.
struct socket_line {
    vexa_socket data;
    std::string_view path; // of a unix socket; into the line
};

// False when the line lacks a field.
bool parse_socket_line(uint32_t kind, std::string_view text, socket_line &out);
