// SPDX-License-Identifier: MIT
#pragma once

// On the device.
namespace sim::driver::places {

inline constexpr char description[] = "/var/run/vexa-sim/wireless";
inline constexpr char entered[] = "/var/run/vexa-sim/entered"; // when: nanoseconds of the monotonic clock
inline constexpr char log[] = "/var/run/vexa-sim/log";
inline constexpr char tracker[] = "/dev/vexa_sta_ht";

} // namespace sim::driver::places
