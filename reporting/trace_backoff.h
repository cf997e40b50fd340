// SPDX-License-Identifier: MIT
#pragma once

// How this process spares a trace service that cannot be reached: from the fifth failure in a row it waits, twice as
// long after each, and for good once that is more than a day.

bool has_given_up();
bool holds_back();

// After an attempt. True for the first failure of the process.
bool note_attempt(bool reached);
