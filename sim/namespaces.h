// SPDX-License-Identifier: MIT
#pragma once

namespace sim {

// Gives this process a mount, a network and an IPC namespace of its own. Whoever may not do so as he is becomes root of
// a user namespace of his own first.
void enter_namespaces();

} // namespace sim
