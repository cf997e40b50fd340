// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

// The hash tables of uthash. Without memory for its buckets a table cannot go on: the process ends with status -1.
#define uthash_fatal(message) exit(-1)
#define HASH_BKT_CAPACITY_THRESH 2U // longer chains cost a look-up a miss of the cache for each link
#include <uthash.h>
