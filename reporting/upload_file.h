// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Hands a dump to the place that the service named. 0, or -1 (logged).
int upload_file(const char *address, const void *data, size_t size);
