// SPDX-License-Identifier: MIT
#pragma once

#include "core/ascii.h"

#include <libvexa.h>

// The first entry with this key, or NULL.
cfg_entry *find_entry(cfg_entry *cfg, const char *key);

// Whether a text is one of the words that mean true, without case.
bool is_true_word(std::string_view text);
