// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "bus.h"
#include "message.h"
#include "output.h"
#include "progress.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <libvexa.h>
#include <net/if.h>
#include <unistd.h>

namespace {

constexpr auto between = std::chrono::milliseconds{100};

bool has_uplink(const char *)
{
    char device[IFNAMSIZ] = "";
    return get_uplink_device(device, sizeof device) == 0 && *device;
}

bool has_internet(const char *)
{
    return system_internet_status() > 0;
}

bool has_time(const char *)
{
    return access("/var/run/ntp.ready", R_OK) == 0;
}

bool is_on_the_bus(const char *name)
{
    const bus_connection bus{name};
    return bus.interface() && vexa_ubus_find_service(bus.interface()) == 0;
}

struct thing {
    const char *name;
    bool (*is_there)(const char *object);
    bool takes_object;
};

constexpr thing things[] = {
    {"uplink", has_uplink, false},
    {"internet", has_internet, false},
    {"time", has_time, false},
    {"bus", is_on_the_bus, true},
};

bool comes(const thing &awaited, const char *object, const std::string &what, std::chrono::seconds patience)
{
    const progress waiting{"waiting for " + what};
    const auto start = std::chrono::steady_clock::now();
    while (!awaited.is_there(object)) {
        if (patience.count() > 0 && std::chrono::steady_clock::now() - start >= patience)
            return false;
        std::this_thread::sleep_for(between);
    }
    return true;
}

int wait(const arguments &args, output &out)
{
    const auto awaited = std::find_if(std::begin(things), std::end(things),
                                      [&](const auto &t) { return strcmp(t.name, args.operand(0)) == 0; });
    if (awaited == std::end(things))
        return out.fail(status_usage,
                        std::string{"wait: '"} + args.operand(0) + "' is none of uplink, internet, time, bus");
    if (awaited->takes_object != (args.operand(1) != nullptr))
        return out.fail(status_usage, awaited->takes_object
                                          ? "wait bus: OBJECT is missing"
                                          : std::string{"wait "} + awaited->name + " takes no object");
    const auto seconds = number16(args, "timeout", 0);
    if (!seconds)
        return out.fail(status_usage, "wait: --timeout takes a number from 0 to 65535");
    const std::string what = awaited->takes_object ? args.operand(1) : awaited->name;
    if (!comes(*awaited, args.operand(1), what, std::chrono::seconds{*seconds}))
        return out.fail(status_negative, "no " + what + " within " + std::to_string(*seconds) + " s");
    return out.for_people() ? int(status_ok) : out.show({json_ref{object({{"found", text(what)}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "wait",
     .operands = "uplink|internet|time|bus [OBJECT]",
     .summary = "return when the device has it, or an object is on the system bus",
     .options = {{{"timeout", "SECONDS", "give up after so long, with status 1"}}},
     .example = "vexactl wait bus power.outlet --timeout 30",
     .run = wait},
};

} // namespace

const verb_family wait_family = verbs;
