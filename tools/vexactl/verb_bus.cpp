// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "bus.h"
#include "message.h"
#include "output.h"
#include "text.h"

namespace {

int bus_find(const arguments &args, output &out)
{
    const bus_connection bus{args.operand(0)};
    if (!bus.interface())
        return out.fail(status_unavailable, std::string{"nobody listens at "} + bus_socket);
    if (vexa_ubus_find_service(bus.interface()) != 0)
        return out.fail(status_negative, std::string{"no object '"} + args.operand(0) + "'");
    static constexpr column labels[] = {{"object", "Object"}, {"id", "Id", kind::number}};
    return out.show(
        {json_ref{object({{"object", text(args.operand(0))}, {"id", number(bus.interface()->service_id)}})}, labels});
}

int show_state(output &out, const char *state)
{
    const int shown = out.for_people() ? out.write(std::string{state} + '\n')
                                       : out.show({json_ref{object({{"state", text(state)}})}, {}});
    const int flushed = out.flush();
    return shown == status_ok ? flushed : shown;
}

// The loop returns after each thing that happens; whether the connection stands is then read off the interface.
int bus_status(const arguments &args, output &out)
{
    const auto seconds = number16(args, "timeout", 0);
    if (!seconds)
        return out.fail(status_usage, "bus status: --timeout takes a number from 0 to 65535");
    const unique_loop loop{event_base_new()};
    const unique_interface iface{
        vexa_ubus_create(loop.get(), bus_socket, "", VEXA_UBUS_NO_LOOKUP | VEXA_UBUS_RETRY, nullptr, nullptr)};
    if (!iface)
        return out.fail(status_unavailable, "out of memory");
    const loop_end ends{loop.get(), *seconds};
    bool connected = iface->read_event;
    int shown = show_state(out, connected ? "connected" : "waiting for the bus");
    while (shown == status_ok && event_base_loop(loop.get(), EVLOOP_ONCE) == 0 && !event_base_got_exit(loop.get())) {
        if (connected == (iface->read_event != nullptr))
            continue;
        connected = !connected;
        shown = show_state(out, connected ? "connected" : "connection lost");
    }
    return shown != status_ok || connected ? shown : int(status_negative);
}

constexpr verb verbs[] = {
    {.name = "bus find",
     .operands = "OBJECT",
     .summary = "the number under which the system bus knows an object",
     .options = {},
     .example = "vexactl bus find power.outlet",
     .run = bus_find},
    {.name = "bus status",
     .summary = "connect to the system bus and show losses and reconnections",
     .options = {{{"timeout", "SECONDS", "end after so long; status 1 when then disconnected"}}},
     .example = "vexactl bus status --timeout 10",
     .run = bus_status},
};

} // namespace

const verb_family bus_family = verbs;
