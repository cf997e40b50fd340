// SPDX-License-Identifier: MIT
#pragma once

// The code of arch_name_to_type() for the processor that "/proc/cpuinfo" tells of.
int processor_family();
