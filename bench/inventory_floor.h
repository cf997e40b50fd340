// SPDX-License-Identifier: MIT
#pragma once

// The calls that a snapshot of the processes cannot do without, and nothing else: what is read is not looked at, but
// for the names that the next call needs. The result is the number of bytes, so that nothing is left out.
long floor_of_snapshot(bool with_fds);
