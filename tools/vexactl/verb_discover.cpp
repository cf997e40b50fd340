// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "loop.h"
#include "message.h"
#include "output.h"
#include "text.h"

#include <cstring>
#include <libvexa.h>
#include <unistd.h>

namespace {

constexpr uint16_t sequences = 0xfff; // 0 is what a listener takes for the last one at first

struct end_discovery {
    ~end_discovery() { vexa_protocol_deinit(); }
};

// What the handler works with, which gets nothing but the payload.
struct listening {
    output *out;
    event_base *loop;
    uint16_t wanted; // messages, 0 for all
    uint16_t heard;
} now;

void show_message(const void *payload)
{
    envelope header;
    const auto *bytes = static_cast<const char *>(payload);
    memcpy(&header, bytes - sizeof header, sizeof header);
    const std::string_view content{bytes, header.length};
    const std::string device = mac_text(header.device_id);
    if (now.out->for_people())
        now.out->write(
            format("%s  method %u  type %u  #%u  ", device.c_str(), header.method, header.type, header.sequence) +
            visible(content) + '\n');
    else
        now.out->show({json_ref{object({{"device", text(device)},
                                        {"method", number(header.method)},
                                        {"type", number(header.type)},
                                        {"sequence", number(header.sequence)},
                                        {"text", text(content)},
                                        {"hex", text(hex_of(content))}})},
                       {}});
    if (now.out->flush() != status_ok || ++now.heard == now.wanted)
        event_base_loopbreak(now.loop);
}

// The library's table knows single methods only.
std::vector<vexa_protocol_handler> every_method()
{
    std::vector<vexa_protocol_handler> table;
    for (uint32_t method = 0; method <= UINT16_MAX; method++)
        table.push_back({show_message, method});
    table.push_back({nullptr, 0});
    return table;
}

int discover_listen(const arguments &args, output &out)
{
    const auto count = number16(args, "count", 0), seconds = number16(args, "timeout", 0);
    if (!count || !seconds)
        return out.fail(status_usage, "discover listen: --count and --timeout take numbers from 0 to 65535");
    const unique_loop loop{event_base_new()};
    now = {&out, loop.get(), *count, 0};
    if (!loop || vexa_protocol_init(1) != 0)
        return out.fail(status_unavailable, "cannot listen; -v shows why");
    const end_discovery at_the_end;
    const std::vector<vexa_protocol_handler> table = every_method();
    vexa_protocol_init_recv(loop.get(), table.data());
    const loop_end ends{loop.get(), *seconds};
    event_base_dispatch(loop.get());
    if (now.heard < now.wanted)
        return out.fail(status_negative, format("%u of %u messages came", now.heard, now.wanted));
    return status_ok;
}

uint16_t some_sequence()
{
    return uint16_t(1 + (unsigned(time(nullptr)) + unsigned(getpid()) * 64) % sequences);
}

int discover_send(const arguments &args, output &out)
{
    message m;
    const std::string wrong = read_message(args, 0, m);
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    if (vexa_protocol_init(1) != 0)
        return out.fail(status_unavailable, "cannot send; -v shows why");
    const end_discovery at_the_end;
    vexa_protocol_ctrl.tx_seq = some_sequence();
    const int sent = vexa_protocol_send(m.payload.data(), int(m.payload.size()), m.method, m.type, 1);
    if (sent < 0)
        return out.fail(status_unavailable, "nothing was sent; -v shows why");
    if (out.for_people())
        return out.write(format("%d bytes sent\n", sent));
    return out.show({json_ref{object({{"bytes", number(sent)}, {"sequence", number(vexa_protocol_ctrl.tx_seq)}})}, {}});
}

int discover_mesh_halt(const arguments &, output &out)
{
    if (vexa_protocol_client_init() != 0)
        return out.fail(status_unavailable, "cannot send; -v shows why");
    const end_discovery at_the_end;
    vexa_protocol_client_event_mesh_halt_send();
    return out.for_people() ? status_ok : out.show({json_ref{object({{"method", number(6)}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "discover listen",
     .summary = "show the messages of the site's devices as they come",
     .options = {{{"count", "N", "end after so many messages"},
                  {"timeout", "SECONDS", "end after so long; status 1 when fewer than --count came"}}},
     .example = "vexactl discover listen --json --count 1",
     .run = discover_listen},
    {.name = "discover send",
     .operands = "[TEXT]",
     .summary = "send a message to the site's devices",
     .options = {{{"method", "N", "what receivers dispatch on; default 0"},
                  {"type", "N", "default 0"},
                  {"hex", "BYTES", "send these instead of a text"}}},
     .example = "vexactl discover send --method 9 --type 1 '{\"hello\":true}'",
     .run = discover_send},
    {.name = "discover mesh-halt",
     .summary = "tell the site's devices that this one's mesh halts",
     .options = {},
     .example = "vexactl discover mesh-halt",
     .run = discover_mesh_halt},
};

} // namespace

const verb_family discover_family = verbs;
