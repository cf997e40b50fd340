// SPDX-License-Identifier: MIT
#include "core/list.h"
#include "core/log.h"
#include "core/owner.h"

#include <cerrno>
#include <cstring>
#include <event2/event.h>
#include <libubus.h>

namespace {

constexpr char log_tag[] = "libvexa_ubus";
constexpr int retry_seconds = 1;

// on_connect may close the interface that it is called for, whose memory then lasts until the connecting is over.
struct bus_interface : vexa_ubus_interface_t {
    bool connecting;
    bool closed;
};

vexa_list interfaces = {&interfaces, &interfaces};
bool initialised;

bus_interface *inner(vexa_ubus_interface_t *iface)
{
    return static_cast<bus_interface *>(iface);
}

void free_event(event *&which)
{
    if (which)
        event_free(which);
    which = nullptr;
}

void release(bus_interface *iface)
{
    free(iface->service);
    free(iface->socket_path);
    free(iface);
}

void u_reconnect_timeout(int, short, void *arg);

void arm_timer(vexa_ubus_interface_t *iface)
{
    constexpr timeval soon = {retry_seconds, 0};
    if (!iface->timer)
        iface->timer = event_new(iface->base, -1, 0, u_reconnect_timeout, iface);
    if (!iface->timer || event_add(iface->timer, &soon) != 0)
        log_err("Failed to create event object for the reconnect timer");
}

void connection_lost(vexa_ubus_interface_t *iface)
{
    free_event(iface->read_event);
    arm_timer(iface);
}

// The client hands the context over, or none when it cannot tell which of them it was.
void vexa_ubus_connection_lost(ubus_context *ctx)
{
    log_warn("ubus connection lost, reconnecting...");
    for (vexa_list *link = interfaces.next; link != &interfaces; link = link->next) {
        auto *iface = entry_of<vexa_ubus_interface_t>(link);
        if (!ctx || iface->ctx == ctx)
            connection_lost(iface);
    }
}

void on_readable(int, short, void *arg)
{
    ubus_handle_event(static_cast<vexa_ubus_interface_t *>(arg)->ctx);
}

// A blocking call may leave a message behind in the socket: the event fires as long as there is one.
bool watch(vexa_ubus_interface_t *iface)
{
    free_event(iface->read_event);
    iface->read_event = event_new(iface->base, iface->ctx->sock.fd, EV_READ | EV_PERSIST, on_readable, iface);
    return iface->read_event && event_add(iface->read_event, nullptr) == 0;
}

void look_service_up(vexa_ubus_interface_t *iface)
{
    if (!(iface->flags & VEXA_UBUS_NO_LOOKUP))
        (void)vexa_ubus_find_service(iface);
}

enum class connection { made, failed, closed };

connection connect_anew(bus_interface *iface)
{
    iface->ctx = ubus_connect(iface->socket_path);
    if (!iface->ctx)
        return connection::failed;
    iface->ctx->connection_lost = vexa_ubus_connection_lost;
    look_service_up(iface);
    iface->connecting = true;
    if (iface->on_connect)
        iface->on_connect(iface);
    iface->connecting = false;
    if (!iface->closed)
        return connection::made;
    release(iface);
    return connection::closed;
}

// The number of the new socket may be that of the old one, so its event went before. The ids of the old connection
// mean nothing to a broker that was started again.
connection connect_again(vexa_ubus_interface_t *iface)
{
    free_event(iface->read_event);
    if (ubus_reconnect(iface->ctx, iface->socket_path) != 0)
        return connection::failed;
    look_service_up(iface);
    return connection::made;
}

void u_reconnect_timeout(int, short, void *arg)
{
    bus_interface *iface = inner(static_cast<vexa_ubus_interface_t *>(arg));
    const bool known = iface->ctx;
    const connection result = known ? connect_again(iface) : connect_anew(iface);
    if (result == connection::closed)
        return;
    if (result == connection::failed) {
        if (known)
            log_warn("Failed to reconnect, trying again in %ds", retry_seconds);
        else
            log_warn("Failed to connect, trying again in %ds", retry_seconds);
        return arm_timer(iface);
    }
    if (!watch(iface)) {
        log_err("failed to create UBUS event");
        return arm_timer(iface);
    }
    log_debug("Reconnected!");
    free_event(iface->timer);
}

bus_interface *make(event_base *base, const char *path, const char *service, unsigned flags)
{
    unique_malloc<bus_interface> iface{static_cast<bus_interface *>(calloc(1, sizeof(bus_interface)))};
    unique_text path_copy{strdup(path)};
    unique_text service_copy{strdup(service)};
    if (!iface || !path_copy || !service_copy)
        return nullptr;
    iface->base = base;
    iface->socket_path = path_copy.release();
    iface->service = service_copy.release();
    iface->flags = flags;
    list_init(&iface->links);
    return iface.release();
}

int look_up(vexa_ubus_interface_t *iface, const char *name, uint32_t *id)
{
    if (!iface || !iface->ctx || !name)
        return -EINVAL;
    uint32_t found = 0; // an object that one may not see is answered with success and no id
    if (ubus_lookup_id(iface->ctx, name, &found) != 0 || found == 0)
        return -ENOSYS;
    *id = found;
    return 0;
}

} // namespace

extern "C" int vexa_ubus_init(void)
{
    while (interfaces.next != &interfaces)
        list_remove(interfaces.next);
    initialised = true;
    return 0;
}

extern "C" vexa_ubus_interface_t *vexa_ubus_create(event_base *base, const char *socket_path, const char *service,
                                                   unsigned flags, void (*on_connect)(vexa_ubus_interface_t *iface),
                                                   void (*on_close)(vexa_ubus_interface_t *iface))
{
    if (!base || !socket_path || !service) {
        log_err("Bad parameters in initialization");
        return nullptr;
    }
    bus_interface *iface = make(base, socket_path, service, flags);
    if (!iface) {
        log_err("out of memory building vexa_ubus_interface_t");
        return nullptr;
    }
    iface->on_connect = on_connect;
    iface->on_close = on_close;
    const connection result = connect_anew(iface);
    if (result == connection::closed)
        return nullptr;
    if (result == connection::failed) {
        log_err("Failed to connect to ubus");
        if (!(flags & VEXA_UBUS_RETRY)) {
            release(iface);
            return nullptr;
        }
        arm_timer(iface);
    } else if (!watch(iface)) {
        log_err("Failed to create event object for UBUS callback");
        vexa_ubus_close(iface);
        return nullptr;
    }
    list_add_tail(&interfaces, &iface->links);
    return iface;
}

extern "C" void vexa_ubus_close(vexa_ubus_interface_t *iface)
{
    if (!iface || inner(iface)->closed)
        return;
    inner(iface)->closed = true;
    list_remove(&iface->links);
    if (iface->on_close)
        iface->on_close(iface);
    free_event(iface->timer);
    free_event(iface->read_event);
    ubus_free(iface->ctx);
    if (!inner(iface)->connecting)
        release(inner(iface));
}

// An interface that a callback makes meanwhile stands behind those that are closed here, and stays.
extern "C" int vexa_ubus_shutdown(void)
{
    if (!initialised)
        return 0;
    vexa_list closing;
    list_init(&closing);
    if (interfaces.next != &interfaces) {
        list_insert(&closing, interfaces.prev, interfaces.next);
        list_init(&interfaces);
    }
    while (closing.next != &closing)
        vexa_ubus_close(entry_of<vexa_ubus_interface_t>(closing.next));
    return 0;
}

extern "C" int vexa_ubus_find_service(vexa_ubus_interface_t *iface)
{
    if (iface)
        iface->service_id = 0;
    const int result = look_up(iface, iface ? iface->service : nullptr, iface ? &iface->service_id : nullptr);
    if (result == -ENOSYS)
        log_warn("Failed to look up %s object", iface->service);
    return result;
}

extern "C" int vexa_ubus_find_object(vexa_ubus_interface_t *iface, const char *name, uint32_t *id)
{
    const int result = look_up(iface, name, id);
    if (result == -ENOSYS)
        log_warn("Failed to look up %s object", name);
    return result;
}
