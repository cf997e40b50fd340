// SPDX-License-Identifier: MIT
#include "core/log.h"

#include <jansson.h>

namespace {

constexpr char log_tag[] = "trace";
constexpr int deepest = 64;

// A value on the way from the outermost one.
struct place {
    const json_t *json;
    const place *outer;
    int depth;
};

bool holds_itself(const place &here)
{
    for (const place *p = here.outer; p; p = p->outer)
        if (p->json == here.json)
            return true;
    return false;
}

void dump(json_t *json, const place *outer, const char *func)
{
    const place here{json, outer, outer ? outer->depth + 1 : 0};
    if (!json || here.depth > deepest)
        return;
    log_info_as(func, "refcount=%zu", json->refcount);
    if (holds_itself(here))
        return;
    const char *key;
    json_t *member;
    json_object_foreach(json, key, member)
    {
        log_info_as(func, "%s:", key);
        dump(member, &here, func);
    }
    for (size_t i = 0; i < json_array_size(json); i++) {
        log_info_as(func, "[%zu]:", i);
        dump(json_array_get(json, i), &here, func);
    }
}

} // namespace

extern "C" void dump_refcount(json_t *json)
{
    dump(json, nullptr, __func__);
}
