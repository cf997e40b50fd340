// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "wireless/driver.h"

#include <cstdio>

namespace {

constexpr char log_tag[] = "libvexa";

template <size_t size>
int send_command(const char *func, const char *ifname, char (&text)[size])
{
    const unique_fd sock = request_socket();
    if (sock && set80211priv(sock.get(), ifname, ioctl_set, 0, 0, text, size) == 0)
        return 0;
    log_err_as(func, "ioctl(IEEE80211_IOCTL_SET) failed: %s", strerror(errno));
    return -1;
}

} // namespace

extern "C" int vexa_set_bpdu_filter(const char *ifname, int value)
{
    char text[16] = "";
    (void)snprintf(text, sizeof text, "bga=%d", value);
    return send_command(__func__, ifname, text);
}

extern "C" int vexa_scan_request(const char *ifname, const char *what)
{
    char text[128] = "";
    (void)snprintf(text, sizeof text, "SiteSurvey=%s", what ? what : "");
    return send_command(__func__, ifname, text);
}

// There is no announcement id on this platform.
extern "C" int vexa_set_net_annid(int id)
{
    return id;
}
