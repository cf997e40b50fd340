// SPDX-License-Identifier: MIT
#include "messaging/discovery.h"

#include "core/log.h"
#include "core/paths.h"

#include <arpa/inet.h>
#include <cstring>

namespace {

constexpr char log_tag[] = "vexa_protocol";
constexpr char path_key_file[] = "/var/run/vexa_protocol.info";

using context = struct vexa_protocol_ctrl;
static_assert(sizeof(context) == 48 && offsetof(context, sock) == 16 && offsetof(context, device_id) == 20 &&
              offsetof(context, key) == 26 && offsetof(context, rx_seq) == 42 && offsetof(context, tx_seq) == 44);

constexpr context no_context = {.initialized = 0,
                                .encrypt = 0,
                                .my_ip = {},
                                .mcast_ip = {},
                                .sock = -1,
                                .device_id = {},
                                .key = {},
                                .rx_seq = 0,
                                .tx_seq = 0};

unsigned lives;

bool take_group(const char *address, const char *func)
{
    if (inet_pton(AF_INET, address, &vexa_protocol_ctrl.mcast_ip) != 1) {
        log_err_as(func, "%s=%s is not valid", "corvo.mcip", address);
        return false;
    }
    log_info_as(func, "mcast_ip is %s", address);
    return true;
}

// Without an address the group is joined when the address comes.
bool join_if_possible(const char *func)
{
    if (!take_bridge_address(func) || vexa_multicast_socket_init() == 0)
        return true;
    log_err_as(func, "set multicast socket fail, %s", strerror(errno));
    return false;
}

bool start(bool listens, const char *func)
{
    site from;
    if (!read_site(path_key_file, listens, from, func))
        return false;
    return !listens || (take_group(from.group, func) && open_listener(func) && join_if_possible(func));
}

bool start_client(const char *func)
{
    site from;
    if (!read_site(path_system_cfg, true, from, func))
        return false;
    (void)inet_pton(AF_INET, from.group, &vexa_protocol_ctrl.mcast_ip); // what is wrong with it, sending tells
    return true;
}

int finish_init(bool started, const char *func)
{
    if (!started) {
        vexa_protocol_deinit();
        log_err_as(func, "could not start vexa-protocol");
        return -1;
    }
    vexa_protocol_ctrl.initialized = 1;
    vexa_protocol_ctrl.encrypt = 1;
    return 0;
}

} // namespace

context vexa_protocol_ctrl = no_context;

void reset_context()
{
    vexa_protocol_ctrl = no_context;
    lives++;
}

unsigned context_life()
{
    return lives;
}

extern "C" int vexa_protocol_init(int listen)
{
    reset_context();
    read_device_id(__func__);
    const int result = finish_init(start(listen != 0, __func__), __func__);
    if (result == 0)
        log_info("vexa_protocol init done");
    return result;
}

extern "C" int vexa_protocol_client_init(void)
{
    reset_context();
    read_device_id(__func__);
    return finish_init(start_client(__func__), __func__);
}

extern "C" void vexa_protocol_deinit(void)
{
    forget_handlers();
    stop_reading();
    if (vexa_protocol_ctrl.sock >= 0) {
        vexa_multicast_socket_deinit();
        (void)close(vexa_protocol_ctrl.sock);
    }
    stop_signals();
    reset_context();
}
