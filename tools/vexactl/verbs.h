// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>

class arguments;
class output;

struct option {
    const char *name = nullptr;    // without the dashes
    const char *value = nullptr;   // what to call its value; nullptr: it takes none
    const char *help = nullptr;    // one line
    const char *choices = nullptr; // the words that its value may be, separated by "|"
    char letter = 0;
};

// One row of the verb table, which parsing, help and completion all read.
struct verb {
    const char *name = nullptr;    // one word or two: "report", "config get"
    const char *operands = "";     // as the usage line shows them: "OLD NEW", "[PREFIX]", "ACTION [ARGS...]"
    const char *summary = nullptr; // one line; none: not for people
    std::array<option, 6> options; // besides those that every verb takes; unused ones have no name
    const char *example = nullptr; // a command line
    int (*run)(const arguments &args, output &out) = nullptr; // an exit_status
};

// the verbs of one file
using verb_family = std::span<const verb>;
extern const verb_family board_family;
extern const verb_family bridge_family;
extern const verb_family bus_family;
extern const verb_family completion_family;
extern const verb_family config_family;
extern const verb_family crash_family;
extern const verb_family discover_family;
extern const verb_family envelope_family;
extern const verb_family http_family;
extern const verb_family interface_family;
extern const verb_family inventory_family;
extern const verb_family lldp_family;
extern const verb_family lock_family;
extern const verb_family log_family;
extern const verb_family msg_family;
extern const verb_family portal_family;
extern const verb_family power_family;
extern const verb_family qos_family;
extern const verb_family report_family;
extern const verb_family run_family;
extern const verb_family satisfaction_family;
extern const verb_family system_family;
extern const verb_family trace_family;
extern const verb_family url_family;
extern const verb_family wait_family;
extern const verb_family webrtc_family;
extern const verb_family wireless_family;

// every family, in the order that help shows
std::span<const verb_family> verb_table();

// the options that every verb takes
std::span<const option> common_options();
