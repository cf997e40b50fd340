// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/device.h"

#include <jansson.h>
#include <memory>

struct drop_json {
    void operator()(json_t *j) const { json_decref(j); }
};
using json_document = std::unique_ptr<json_t, drop_json>;

inline std::string text_of(const json_t *value)
{
    char *dumped = value ? json_dumps(value, JSON_COMPACT | JSON_ENCODE_ANY) : nullptr;
    std::string text = dumped ? dumped : "(none)";
    free(dumped);
    return text;
}

inline int is_not(vexa_ps_entry *entry, void *pid)
{
    return entry->pid != *static_cast<int32_t *>(pid);
}

// One process of a snapshot; null when it is not there.
inline json_document process(int32_t pid, bool with_fds = true)
{
    const json_document all{vexa_ps_list_to_array(vexa_ps_filter(with_fds, is_not, &pid))};
    EXPECT_LE(json_array_size(all.get()), 1u);
    return json_document{json_incref(json_array_get(all.get(), 0))};
}

inline std::string member(const json_document &object, const char *key)
{
    return text_of(json_object_get(object.get(), key));
}
