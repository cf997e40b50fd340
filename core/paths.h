// SPDX-License-Identifier: MIT
#pragma once

// Files that more than one part of the library, or more than one function of it, knows by name.

inline constexpr char path_log_messages[] = "/var/log/messages";
inline constexpr char path_kmsg[] = "/dev/kmsg";
inline constexpr char path_urandom[] = "/dev/urandom";
inline constexpr char path_system_cfg[] = "/tmp/system.cfg";
inline constexpr char path_report_lock[] = "/var/run/report";
inline constexpr char path_inform_profile_lock[] = "/var/run/inform-profile.lock";
inline constexpr char path_mgmt_cfg[] = "/etc/persistent/cfg/mgmt";
inline constexpr char path_ip_ready[] = "/var/run/ipready.br0";
inline constexpr char path_system_info[] = "/proc/vexahal/system.info";
inline constexpr char path_bus_socket[] = "/var/run/ubus.sock";
