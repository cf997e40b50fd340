// SPDX-License-Identifier: MIT
#pragma once

// 0 when the owner of the device allows no reports; 2 where nothing is said.
long analytics_mode();

// Whether a crash report may go out: analytics are on, the clock is set and the device has its address.
bool reporting_allowed();
