// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdio>

// The next line, cut to @size and at its line feed or carriage return. False when there is none; errno tells why,
// except at the end of the file.
bool read_line(FILE *file, char *buf, size_t size);
