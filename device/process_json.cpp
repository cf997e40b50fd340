// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/log.h"
#include "core/owner.h"
#include "core/utf8.h"
#include "device/process.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_proc";

constexpr const char *fd_types[] = {"unknown", "file", "anon", "pipe", "socket"};
constexpr const char *socket_kinds[] = {"unknown", "unix", "tcp", "tcp6", "udp", "udp6"};
constexpr const char *tcp_states[] = {"UNKNOWN",   "ESTABLISHED", "SYN_SENT",    "SYN_RECV",   "FIN_WAIT1",
                                      "FIN_WAIT2", "TIME_WAIT",   "CLOSE",       "CLOSE_WAIT", "LAST_ACK",
                                      "LISTEN",    "CLOSING",     "NEW_SYN_RECV"};
constexpr const char *unix_types[] = {"UNKNOWN", "STREAM", "DGRAM", "RAW", "RDM", "SEQPACKET"};
constexpr const char *unix_states[] = {"UNKNOWN",    "FREE",      "UNCONNECTED",  "LISTENING",
                                       "CONNECTING", "CONNECTED", "DISCONNECTING"};

// The first name stands for a number that has none.
template <size_t size>
json_t *name_of(const char *const (&names)[size], uint32_t number)
{
    return json_string_nocheck(names[number < size ? number : 0]);
}

// Keys are ASCII. What cannot be stored for lack of memory is left out.
void set(json_t *obj, const char *key, json_t *value)
{
    (void)json_object_set_new_nocheck(obj, key, value);
}

json_t *port(uint32_t number)
{
    return number == 0 ? json_string_nocheck("*") : json_integer(number);
}

json_t *socket_to_obj(const vexa_socket &socket)
{
    json_t *obj = json_object();
    if (!obj) {
        log_err("Failed to alloc socket json object");
        return nullptr;
    }
    if (socket.kind == VEXA_SOCKET_UNIX) {
        set(obj, "refcnt", json_integer(socket.un.refcnt));
        set(obj, "type", name_of(unix_types, socket.un.type));
        if (socket.un.path)
            set(obj, "path", json_text(socket.un.path));
        set(obj, "state", name_of(unix_states, socket.un.state));
    } else {
        set(obj, "local_port", port(socket.ip.local_port));
        set(obj, "remote_port", port(socket.ip.remote_port));
        set(obj, "state", name_of(tcp_states, socket.ip.state));
    }
    return obj;
}

json_t *fd_to_obj(const vexa_ps_fd &fd)
{
    json_t *obj = json_object();
    if (!obj) {
        log_err("Failed to allocate json object");
        return nullptr;
    }
    set(obj, "fd_type", name_of(fd_types, fd.fd_type));
    if (fd.fd_type != VEXA_FD_SOCKET) {
        if (fd.link)
            set(obj, "link", json_text(fd.link));
    } else if (fd.socket) {
        set(obj, "socket_type", name_of(socket_kinds, fd.socket->kind));
        set(obj, "socket", socket_to_obj(*fd.socket));
    }
    return obj;
}

json_t *process_to_obj(vexa_ps_entry &entry)
{
    json_t *obj = json_object();
    if (!obj) {
        log_err("Failed to allocate json object");
        return nullptr;
    }
    set(obj, "pid", json_integer(entry.pid));
    set(obj, "ppid", json_integer(entry.ppid));
    set(obj, "vsz", json_integer(json_int_t(entry.vsz)));
    set(obj, "rss", json_integer(entry.rss));
    set(obj, "stat", json_text({&entry.state, 1}));
    set(obj, "fd_count", json_integer(entry.fd_count));
    set(obj, "comm", json_text(entry.comm));
    set(obj, "fds", vexa_fds_to_array(&entry));
    return obj;
}

} // namespace

extern "C" json_t *vexa_fds_to_array(vexa_ps_entry *entry)
{
    json_t *array = json_array();
    if (!array) {
        log_err("Failed to allocate json array");
        return nullptr;
    }
    for (vexa_list *link = entry->fds.next; link != &entry->fds; link = link->next)
        (void)json_array_append_new(array, fd_to_obj(*entry_of<vexa_ps_fd>(link)));
    return array;
}

extern "C" json_t *vexa_ps_list_to_array(vexa_ps_list *list)
{
    const unique_processes consumed{list};
    json_t *array = json_array();
    if (!array) {
        log_err("Failed to allocate json array");
        return nullptr;
    }
    while (auto *entry = list ? list_take_first<vexa_ps_entry>(&list->entries) : nullptr) {
        const unique_process taken{entry};
        (void)json_array_append_new(array, process_to_obj(*entry)); // without an object it is skipped
    }
    return array;
}

extern "C" json_t *vexa_ps_array(void)
{
    return vexa_ps_list_to_array(vexa_ps());
}
