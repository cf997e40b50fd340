// SPDX-License-Identifier: MIT
#include "core/load_json.h"
#include "core/log.h"
#include "core/text.h"
#include "wireless/lldp_client.h"

#include <algorithm>
#include <climits>
#include <ctime>

namespace {

constexpr char log_tag[] = "lldp";
constexpr long slow_seconds = 2;
constexpr int no_neighbours = 2; // a result beside those of ask_lldp()
constexpr int most_notes = 5;

int notes; // how often in a row it was said that there are no neighbours

time_t now()
{
    timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec;
}

bool is_wired(const char *name)
{
    return begins_with(name, "eth") || begins_with(name, "bond");
}

json_int_t port_index(const char *name)
{
    return json_int_t{1} + std::clamp(strtol(name + 3, nullptr, 10), long{INT_MIN}, long{INT_MAX} - 1);
}

// Shares a text; what is no text is not there. False without memory.
bool share(json_t *neighbour, const char *key, json_t *value)
{
    return !json_is_string(value) || json_object_set(neighbour, key, value) == 0;
}

json_t *id_of(const json_t *entry)
{
    return json_object_get(json_object_get(entry, "id"), "value");
}

bool describe_chassis(json_t *neighbour, json_t *chassis)
{
    const char *name;
    json_t *entry;
    json_object_foreach(chassis, name, entry)
    {
        if (!share(neighbour, "chassis_id", id_of(entry)) ||
            !share(neighbour, "chassis_descr", json_object_get(entry, "descr")))
            return false;
    }
    return true;
}

// A new reference; NULL without memory.
json_ref make_neighbour(const char *local_name, json_t *chassis, const json_t *port)
{
    const bool wired = is_wired(local_name);
    json_ref made{json_pack("{s:s, s:b, s:s}", "local_port_name", local_name, "is_wired", int(wired), "chassis_id",
                            "00:00:00:00:00:00")};
    const bool whole =
        made && describe_chassis(made.get(), chassis) && share(made.get(), "port_id", id_of(port)) &&
        share(made.get(), "port_descr", json_object_get(port, "descr")) &&
        (!wired || json_object_set_new(made.get(), "local_port_idx", json_integer(port_index(local_name))) == 0);
    return whole ? std::move(made) : json_ref{};
}

// The neighbours under the names of local interfaces.
int append_neighbours(json_t *found, json_t *interfaces)
{
    const char *name;
    json_t *entry;
    json_object_foreach(interfaces, name, entry)
    {
        json_t *chassis = json_object_get(entry, "chassis");
        if (!chassis)
            continue;
        json_ref neighbour = make_neighbour(name, chassis, json_object_get(entry, "port"));
        if (!neighbour || json_array_append_new(found, neighbour.release()) != 0)
            return -8;
    }
    return 0;
}

int read_neighbours(json_t *found, const char *text)
{
    json_error_t error;
    const json_ref answer{load_json(text, error)};
    if (!answer)
        return -5;
    const json_t *lldp = json_object_get(answer.get(), "lldp");
    if (!lldp)
        return -6;
    json_t *interface = json_object_get(lldp, "interface");
    if (!interface)
        return no_neighbours;
    notes = 0;
    int result = json_is_array(interface) ? 0 : append_neighbours(found, interface);
    for (size_t i = 0; result == 0 && i < json_array_size(interface); i++)
        result = append_neighbours(found, json_array_get(interface, i));
    return result;
}

} // namespace

extern "C" json_t *vexa_get_lldp_json(void)
{
    const time_t start = now();
    unique_text answer;
    json_ref found;
    int result = ask_lldp(answer);
    if (result == lldp_silence) {
        log_info("Poll timeout");
        return nullptr;
    }
    if (result == 0) {
        const auto seconds = long(now() - start);
        if (seconds > slow_seconds)
            log_err("Warning: lldpcli took %ld seconds!", seconds);
        found.reset(json_array());
        result = found ? read_neighbours(found.get(), answer.get()) : -4;
    }
    if (result == no_neighbours && notes < most_notes) {
        log_info("No LLDP neighbors found");
        notes++;
    }
    if (result < 0)
        log_err("wireless/lldp error %d", result);
    return found.release();
}
