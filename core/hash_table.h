// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

// The hash tables of uthash. Without memory for its buckets a table cannot go on: the process ends with status -1.
#define uthash_fatal(message) exit(-1)
#include <uthash.h>
