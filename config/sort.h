// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>

// Sorts by cfg_natural_compare() of the keys; equal ones keep their order. The first @common characters of all keys are
// the same, and no number goes on behind them.
cfg_it *sort_by_key(cfg_it *list, size_t common);
