// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "messaging/discovery.h"
#include "messaging/envelope.h"

#include <csignal>
#include <cstring>
#include <event2/event.h>

namespace {

constexpr char log_tag[] = "vexa_protocol";
constexpr size_t buffer_size = 512;
constexpr size_t block_size = 16;
constexpr int rejected = 1;
constexpr int duplicate = 2;

// The caller's table, and the events on the caller's loop. They are not released at exit, when the loop may be gone.
const vexa_protocol_handler *handlers;
event *readable;
event *address_changed;

void release(event *&e)
{
    if (e)
        event_free(e);
    e = nullptr;
}

void watch(event *&e, event_base *base, int number, short what, event_callback_fn callback, const char *func)
{
    release(e);
    e = event_new(base, number, short(what | EV_PERSIST), callback, nullptr);
    if (!e || event_add(e, nullptr) != 0)
        log_err_as(func, "unable to add event");
}

// A zero follows the datagram, for handlers that take the payload as text.
struct datagram {
    alignas(envelope) uint8_t bytes[buffer_size + 1];
    int size;

    envelope *packet() { return reinterpret_cast<envelope *>(bytes); }
    const uint8_t *payload() const { return bytes + wire::payload; }
};

// One that did not fit has a size that no length in its header agrees with.
bool receive(datagram &d)
{
    const ssize_t size = recv(vexa_protocol_ctrl.sock, d.bytes, buffer_size, MSG_DONTWAIT | MSG_TRUNC);
    if (size < 0)
        return false;
    d.size = size_t(size) > buffer_size ? 0 : int(size);
    d.bytes[d.size] = '\0';
    return true;
}

// Whole blocks only: others stay as they came, so that their sender would not need the key.
int open_datagram(datagram &d)
{
    const size_t size = size_t(d.size);
    if (size > wire::payload && (size - wire::payload) % block_size)
        return rejected;
    return dec_payload(d.size, d.packet(), &vexa_protocol_ctrl);
}

// False when a handler ended the life of the context, or began another.
bool dispatch(const datagram &d, uint16_t method)
{
    const unsigned life = context_life();
    for (const vexa_protocol_handler *h = handlers; h && h->callback; h++) {
        if (h->method != method)
            continue;
        h->callback(d.payload());
        if (context_life() != life)
            return false;
    }
    return true;
}

void vexa_protocol_recv(evutil_socket_t, short, void *)
{
    datagram d;
    if (!receive(d)) {
        if (errno != EINTR && errno != EAGAIN)
            log_err("recvfrom failed: %s", strerror(errno));
        return;
    }
    const int result = open_datagram(d);
    if (result == rejected)
        log_err("failed to decrypt the message: %d", result);
    if (result == rejected || result == duplicate)
        return;
    const envelope header = *d.packet();
    log_debug("[%.*s]", int(header.length), reinterpret_cast<const char *>(d.payload()));
    if (dispatch(d, header.method))
        vexa_protocol_ctrl.rx_seq = header.sequence;
}

void vexa_usr1_handler(evutil_socket_t, short, void *)
{
    log_info("Get DHCP IP");
    if (!take_bridge_address(__func__))
        return;
    vexa_multicast_socket_deinit();
    if (vexa_multicast_socket_init() != 0)
        log_err("set multicast socket fail, %s", strerror(errno));
}

} // namespace

void forget_handlers()
{
    handlers = nullptr;
}

void stop_reading()
{
    release(readable);
}

void stop_signals()
{
    release(address_changed);
}

extern "C" int vexa_protocol_init_recv(struct event_base *base, const vexa_protocol_handler *table)
{
    handlers = table;
    watch(readable, base, vexa_protocol_ctrl.sock, EV_READ, vexa_protocol_recv, __func__);
    watch(address_changed, base, SIGUSR1, EV_SIGNAL, vexa_usr1_handler, __func__);
    return 0;
}
