// SPDX-License-Identifier: MIT
#include "device/socket_line.h"

#include "core/scanner.h"

#include <netinet/tcp.h>

namespace {

constexpr unsigned long tcp_states = 13;     // and 0
constexpr unsigned long unix_types = 6;      // and 0
constexpr unsigned long listening = 0x10000; // flag of a unix socket

// A datagram socket is connected or it is not; the kernel's other numbers mean nothing.
uint32_t ip_state(uint32_t kind, unsigned long state)
{
    const bool stream = kind == VEXA_SOCKET_TCP || kind == VEXA_SOCKET_TCP6;
    const bool known = stream ? state < tcp_states : state == TCP_ESTABLISHED || state == TCP_CLOSE;
    return known ? uint32_t(state) : 0;
}

// By the kernel's number: free, unconnected, connecting, connected, disconnecting. A free socket counts as unknown:
// reports rely on it.
uint32_t unix_state(unsigned long state, unsigned long flags)
{
    constexpr uint32_t states[] = {0, 2, 4, 5, 6};
    if (state == 1 && (flags & listening))
        return 3;
    return state < std::size(states) ? states[state] : 0;
}

// "sl: local:port remote:port state queues timer retransmissions uid timeout inode"
bool parse_ip(uint32_t kind, scanner line, vexa_socket &out)
{
    unsigned long local = 0, remote = 0, state = 0, inode = 0;
    const bool whole = line.skip_numbers<10>(1) && line.literal(':') &&                             //
                       line.skip_numbers<16>(1) && line.literal(':') && line.hex(local) &&          //
                       line.skip_numbers<16>(1) && line.literal(':') && line.hex(remote) &&         //
                       line.hex(state) &&                                                           //
                       line.skip_numbers<16>(1) && line.literal(':') && line.skip_numbers<16>(1) && // queues
                       line.skip_numbers<16>(1) && line.literal(':') && line.skip_numbers<16>(1) && // timer
                       line.skip_numbers<16>(1) && line.skip_numbers<10>(2) && line.decimal(inode);
    out.inode = uint32_t(inode);
    out.ip = {uint32_t(local), uint32_t(remote), ip_state(kind, uint32_t(state))};
    return whole;
}

// "address: references protocol flags type state inode path"
bool parse_unix(scanner line, socket_line &out)
{
    unsigned long references = 0, flags = 0, type = 0, state = 0, inode = 0;
    if (!line.skip_numbers<16>(1) || !line.literal(':') || !line.hex(references) || !line.skip_numbers<16>(1) ||
        !line.hex(flags) || !line.hex(type) || !line.hex(state) || !line.decimal(inode))
        return false;
    (void)line.word(out.path);
    out.data.inode = uint32_t(inode);
    out.data.un = {uint32_t(references), type < unix_types ? uint32_t(type) : 0, unix_state(state, flags), nullptr};
    return true;
}

} // namespace

bool parse_socket_line(uint32_t kind, std::string_view text, socket_line &out)
{
    out = {};
    out.data.kind = kind;
    return kind == VEXA_SOCKET_UNIX ? parse_unix(scanner{text}, out) : parse_ip(kind, scanner{text}, out.data);
}
