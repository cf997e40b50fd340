// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "power.h"

#include <libvexa.h>
#include <unistd.h>

namespace {

// People see the table, programs the whole state.
int show_outlets(output &out, const json_ref &state)
{
    if (!out.for_people())
        return out.show({json_ref{json_incref(state.get())}, {}});
    return out.show(
        {json_ref{json_incref(json_object_get(state.get(), "outlet_table"))}, outlet_columns, "no outlets"});
}

int show_supplies(output &out, const json_ref &state)
{
    return out.show({json_ref{json_incref(state.get())}, psu_columns, "no power supplies"});
}

// Shows the state, and with --watch each that differs from the one before, until the bus cannot tell it any more.
int watch(const arguments &args, output &out, json_t *(*ask)(unsigned), int (*show)(output &, const json_ref &))
{
    json_ref before;
    for (;;) {
        json_ref state{ask(0)};
        if (!state)
            return out.fail(status_unavailable, "the system bus does not tell; -v shows why");
        if (!before || !json_equal(before.get(), state.get())) {
            const int shown = show(out, state);
            if (shown != status_ok || out.flush() != status_ok || !args.has("watch"))
                return shown;
        }
        before = std::move(state);
        sleep(1);
    }
}

int power_outlets(const arguments &args, output &out)
{
    return watch(args, out, vexa_outlet_get_outlet_status_json, show_outlets);
}

int power_supplies(const arguments &args, output &out)
{
    return watch(args, out, vexa_psu_get_json_psu_table, show_supplies);
}

constexpr option watching = {"watch", nullptr, "ask each second and show what has changed"};

constexpr verb verbs[] = {
    {.name = "power outlets",
     .summary = "the power outlets: relays, voltage, current, power",
     .options = {{watching}},
     .example = "vexactl power outlets --watch",
     .run = power_outlets},
    {.name = "power supplies",
     .summary = "the power supplies: state, voltage, temperature",
     .options = {{watching}},
     .example = "vexactl power supplies --json",
     .run = power_supplies},
};

} // namespace

const verb_family power_family = verbs;
