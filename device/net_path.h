// SPDX-License-Identifier: MIT
#pragma once

#include "core/format.h"

#include <climits>
#include <cstring>

inline constexpr char path_class_net[] = "/sys/class/net";

// The path of an entry of an interface, or of a port of a bridge. A name that leads elsewhere gives the empty text,
// which opens nothing.
class net_path {
public:
    net_path(const char *ifname, const char *entry)
    {
        if (!strchr(ifname, '/'))
            (void)format_whole(text_, sizeof text_, "%s/%s/%s", path_class_net, ifname, entry);
    }

    net_path(const char *bridge, const char *port, const char *entry)
    {
        if (!strchr(bridge, '/') && !strchr(port, '/'))
            (void)format_whole(text_, sizeof text_, "%s/%s/brif/%s/%s", path_class_net, bridge, port, entry);
    }

    operator const char *() const { return text_; }

private:
    char text_[sizeof path_class_net + size_t{3} * NAME_MAX] = "";
};
