// SPDX-License-Identifier: MIT
#pragma once

namespace sim {

// Gives this process mounts, a network, IPC objects and a host name of its own. Who may not do so becomes root of a
// user namespace of his own first.
void enter_namespaces();

} // namespace sim
