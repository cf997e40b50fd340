// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "inventory.h"
#include "text.h"

#include <charconv>
#include <cstring>

namespace {

int cannot_read(output &out, const char *path)
{
    return out.fail(status_unavailable, std::string{"cannot read "} + path);
}

std::string end_of(const json_t *socket)
{
    const auto port = [socket](const char *key) {
        const json_t *value = json_object_get(socket, key);
        return json_is_integer(value) ? std::to_string(json_integer_value(value)) : std::string{"*"};
    };
    if (const json_t *path = json_object_get(socket, "path"))
        return std::string{bytes_of(path)};
    return json_object_get(socket, "local_port") ? port("local_port") + " > " + port("remote_port") : "";
}

// what people see of a descriptor: what it leads to, and the state of a socket
json_t *fd_row(const json_t *process, const json_t *fd)
{
    const json_t *socket = json_object_get(fd, "socket");
    const char *kind = socket ? "socket_type" : "fd_type";
    const json_t *link = json_object_get(fd, "link");
    const json_t *state = json_object_get(socket, "state");
    return object({{"pid", json_incref(json_object_get(process, "pid"))},
                   {"comm", json_incref(json_object_get(process, "comm"))},
                   {"kind", json_incref(json_object_get(fd, kind))},
                   {"target", text(link ? std::string{bytes_of(link)} : end_of(socket))},
                   {"state", state ? text(bytes_of(state)) : json_null()}});
}

json_ref fd_rows(const json_t *processes)
{
    json_ref rows{list()};
    for (size_t i = 0; i < json_array_size(processes); i++) {
        const json_t *process = json_array_get(processes, i);
        const json_t *fds = json_object_get(process, "fds");
        for (size_t k = 0; k < json_array_size(fds); k++)
            append(rows.get(), fd_row(process, json_array_get(fds, k)));
    }
    return rows;
}

int ps(const arguments &args, output &out)
{
    static constexpr column fd_columns[] = {{"pid", "PID", kind::number},
                                            {"comm", "Name", kind::text, true},
                                            {"kind", "Kind"},
                                            {"target", "Leads to", kind::text, true},
                                            {"state", "State"}};
    const char *name = args.value("filter");
    const bool with_fds = args.has("fds");
    json_ref found = process_documents(with_fds, name);
    if (!found)
        return cannot_read(out, "/proc");
    const bool none = json_array_size(found.get()) == 0;
    const int shown = with_fds && out.for_people() ? out.show({fd_rows(found.get()), fd_columns})
                                                   : out.show({std::move(found), process_columns});
    return name && none ? out.fail(status_negative, std::string{"no process '"} + name + "'") : shown;
}

int sockets(const arguments &, output &out)
{
    static constexpr column columns[] = {{"pid", "PID", kind::number},
                                         {"comm", "Name", kind::text, true},
                                         {"socket_type", "Kind"},
                                         {"end", "Path or ports", kind::text, true},
                                         {"state", "State"}};
    json_ref found = socket_documents();
    if (!found)
        return cannot_read(out, "/proc");
    for (size_t i = 0; out.for_people() && i < json_array_size(found.get()); i++) {
        json_t *row = json_array_get(found.get(), i);
        json_object_set_new(row, "end", text(end_of(row)));
    }
    return out.show({std::move(found), columns, "no sockets"});
}

int memory(const arguments &, output &out)
{
    answer found{memory_document(), {}};
    if (!found.document)
        return cannot_read(out, "/proc/meminfo");
    found.side_by_side = true;
    return out.show(found);
}

int conntrack(const arguments &args, output &out)
{
    const std::string_view digits = args.value("top", "10");
    uint32_t most = 0;
    const auto [end, wrong] = std::from_chars(digits.data(), digits.data() + digits.size(), most);
    if (wrong != std::errc{} || end != digits.data() + digits.size() || most == 0)
        return out.fail(status_usage, "conntrack: --top takes a number from 1 on");
    json_ref found = host_documents(most);
    if (!found)
        return cannot_read(out, "/proc/net/nf_conntrack");
    return out.show({std::move(found), host_columns, "no connections"});
}

constexpr verb verbs[] = {
    {.name = "ps",
     .summary = "the processes",
     .options = {{{"fds", nullptr, "with their descriptors and sockets"},
                  {"filter", "NAME", "only those with this name"}}},
     .example = "vexactl ps --fds --filter hostapd",
     .run = ps},
    {.name = "sockets",
     .summary = "the sockets of all processes",
     .options = {},
     .example = "vexactl sockets",
     .run = sockets},
    {.name = "memory",
     .summary = "the kernel's memory counters, in kB",
     .options = {},
     .example = "vexactl memory",
     .run = memory},
    {.name = "conntrack",
     .summary = "the hosts that occur most often in tracked connections",
     .options = {{{"top", "N", "how many; 10 without it"}}},
     .example = "vexactl conntrack --top 3",
     .run = conntrack},
};

} // namespace

const verb_family inventory_family = verbs;
