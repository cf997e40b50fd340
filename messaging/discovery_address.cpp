// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/paths.h"
#include "messaging/discovery.h"

#include <arpa/inet.h>

namespace {

constexpr char log_tag[] = "vexa_protocol";

} // namespace

bool take_bridge_address(const char *func)
{
    char text[64];
    in_addr address{};
    (void)freadline(path_ip_ready, text, sizeof text, "0.0.0.0");
    if (inet_pton(AF_INET, text, &address) != 1 || address.s_addr == INADDR_ANY ||
        address.s_addr == vexa_protocol_ctrl.my_ip.s_addr)
        return false;
    vexa_protocol_ctrl.my_ip = address;
    log_info_as(func, "my_ip is %s", text);
    return true;
}
