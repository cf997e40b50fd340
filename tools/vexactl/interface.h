// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

json_t *interface_document(const char *name); // {name, index, up, address}
json_t *interface_documents();                // of all interfaces
json_t *uplink_document();                    // {state, device}
