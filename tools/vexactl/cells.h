// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"
#include "table.h"

// What stands in a table for a member of an object.

std::string scalar_text(const json_t *value);
cell cell_of(const json_t *value, kind as, const palette &colours);

// the columns of an answer, or one for each member of the object when it names none
std::vector<column> columns_of(const answer &what, const json_t *object);
