// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/driver.h"
#include "tests/support/bytes.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <memory>

// What a test asks of the Wi-Fi driver is answered in this process; the air of the device is in
// "/var/run/vexa-sim/wireless".
using sim::driver::change;

inline void set_air(const std::string &lines)
{
    the_device.put("/var/run/vexa-sim/wireless", "radio ra0 noise=-92 frequency=2437\nvap ra0 radio=ra0 ssid=lobby\n"
                                                 "vap apcli0 radio=ra0 usage=uplink\n" +
                                                     lines + "\n");
    the_device.put("/var/run/vapusage.ra0", "user\n");
    the_device.put("/var/run/vapusage.apcli0", "uplink\n");
}

using list_ref = std::unique_ptr<vexa_list, decltype([](vexa_list *list) { free_scanlist(list); })>;

// The entries, which begin with their links; checks that the links agree both ways.
template <typename Entry>
std::vector<const Entry *> entries_of(const list_ref &list)
{
    std::vector<const Entry *> entries;
    for (const vexa_list *at = list->next; at != list.get(); at = at->next) {
        EXPECT_EQ(at->next->prev, at);
        entries.push_back(reinterpret_cast<const Entry *>(at));
    }
    return entries;
}
