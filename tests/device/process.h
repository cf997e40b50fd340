// SPDX-License-Identifier: MIT
#pragma once

#include "tests/device/json.h"

inline int is_not(vexa_ps_entry *entry, void *pid)
{
    return entry->pid != *static_cast<int32_t *>(pid);
}

// One process of a snapshot; null when it is not there.
inline json_ref process(int32_t pid, bool with_fds = true)
{
    const json_ref all{vexa_ps_list_to_array(vexa_ps_filter(with_fds, is_not, &pid))};
    EXPECT_LE(json_array_size(all.get()), 1u);
    return json_ref{json_incref(json_array_get(all.get(), 0))};
}

inline std::string member(const json_ref &object, const char *key)
{
    return text_of(json_object_get(object.get(), key));
}
