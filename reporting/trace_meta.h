// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

// What an envelope says of the device that sends it, as far as the caller's object (or NULL) does not say otherwise.
// Its own "meta" object is shared, and receives the device's keys. Null without memory.
json_ref trace_outer_meta_object(json_t *given);
