// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"
#include "messaging/site.h"

// The parts of the discovery protocol. `func` is the exported function that a part works for, whose name its lines
// bear; a function without one has the name of its lines itself.

inline constexpr uint16_t discovery_port = 48000;

// The state as before any init; nothing is released. Whoever called out to a host's function compares the life before
// and after: another one means that the state is no longer what it was.
void reset_context();
unsigned context_life();

sockaddr_in discovery_address(in_addr address);

// Opens vexa_protocol_ctrl.sock for a listener.
bool open_listener(const char *func);

// Joins the group on the interface of my_ip: 0 or, logged, -1, -ENOENT, -ESRCH or -EINTR for the step that failed.
int vexa_multicast_socket_init();
void vexa_multicast_socket_deinit();

// A socket that sends one message.
unique_fd vexa_protocol_client_sock_init();

// Takes the address of the bridge over when there is one and it is new.
bool take_bridge_address(const char *func);

// What vexa_protocol_init_recv() registered.
void forget_handlers();
void stop_reading(); // before the socket is closed
void stop_signals();
