// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

// The isolation logs of the device in the order of their names, as their writer and the library left them:
// {name, bytes, posted, attempts, finished}. Nothing is changed to find out.
json_ref isolation_logs();

// how many of them the consumer has not finished
size_t unfinished_logs();
