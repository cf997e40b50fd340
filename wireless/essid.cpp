// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "wireless/driver.h"

namespace {

constexpr char log_tag[] = "wireless";

} // namespace

extern "C" int get_if_essid(const char *ifname, char *buf, uint16_t size)
{
    const int result = read_essid(request_socket().get(), ifname, buf, size);
    if (result < 0)
        log_debug("unable to get essid: %s", strerror(errno));
    return result;
}
