// SPDX-License-Identifier: MIT
#pragma once

#include "sim/tree.h"

namespace sim {

// A /dev with the machine's harmless nodes, terminals of its own and a plain file as kernel log.
void cover_device_nodes(tree &);

// What of it is a plain entry of the tree, and gone when the tree has been cleared.
void make_device_files(tree &);

} // namespace sim
