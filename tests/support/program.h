// SPDX-License-Identifier: MIT
#pragma once

#include <vexa_sim.h>

using vexa_sim::finished;
using vexa_sim::run_program; // on the device that the test is on
