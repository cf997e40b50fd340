// SPDX-License-Identifier: MIT
// What the emulator does not do, and the tests that need it: there they are skipped, for the reason given here.
#pragma once

namespace emulation {

constexpr char ethtool[] = "the emulator has no requests of ethtool";
constexpr char neighbours[] = "the emulator passes on no request about neighbours";
constexpr char multicast[] = "the emulator sets no interface for multicast";
constexpr char ioctls[] = "the emulator refuses requests that it does not know with an error of its own";
constexpr char threads[] = "the emulator has a thread of its own, which user namespaces do not allow";
constexpr char slow[] = "emulated commands take longer than the time that is looked at";

struct limit {
    const char *test;
    const char *reason;
};

constexpr limit limits[] = {
    {"fill_dev_status.tells_address_flags_and_link", ethtool},
    {"report.is_one_page_of_what_the_device_answers", ethtool},
    {"get_mac_brinfo.finds_what_the_kernel_learned", neighbours},
    {"add_ip_neigh_entry.makes_the_kernel_look", neighbours},
    {"get_gateway_mac.takes_a_complete_neighbour_of_the_kernels_table", neighbours},
    {"vexa_protocol_init.tells_what_is_wrong_and_tears_down", multicast},
    {"vexa_protocol.hears_what_another_device_says", multicast},
    {"vexa_protocol.joins_when_the_address_comes_and_follows_it", multicast},
    {"vexa_protocol.withstands_a_flood", multicast},
    {"vexa_protocol.reports_sockets_that_it_does_not_get", multicast},
    {"vexa_protocol_client.sends_single_messages", multicast},
    {"discovery_daemon.greets_and_answers", multicast},
    {"discover.carries_a_message_from_device_to_device", multicast},
    {"discover.tells_why_it_does_nothing", multicast},
    {"driver.takes_away_what_a_request_needs", ioctls},
    {"simulator.says_when_the_kernel_refuses", threads},
    {"vexa_get_lldp_json.leaves_no_child_and_no_pipe", slow},
};

} // namespace emulation
