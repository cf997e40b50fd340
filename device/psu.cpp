// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "device/bus_call.h"
#include "device/last_answer.h"

namespace {

constexpr char log_tag[] = "libvexa_power";
constexpr char table[] = "psu_table";

last_answer cached;

bool are_supplies(const json_t *entries)
{
    if (!json_is_array(entries))
        return false;
    size_t i;
    const json_t *entry;
    json_array_foreach(entries, i, entry)
    {
        if (!json_is_integer(json_object_get(entry, "psu_idx")))
            return false;
    }
    return true;
}

} // namespace

extern "C" json_t *vexa_psu_get_json_psu_table(unsigned max_age_s)
{
    if (const json_t *known = cached.younger_than(max_age_s)) {
        log_debug("use cached psu array");
        return json_deep_copy(known);
    }
    cached.keep(nullptr);
    const json_ref answer = ask_status("power.psu", table, __func__);
    if (!answer)
        return nullptr;
    json_t *supplies = json_object_get(answer.get(), table);
    if (!are_supplies(supplies)) {
        log_err("Fail to load psu_table");
        return nullptr;
    }
    cached.keep(json_ref{json_incref(supplies)});
    return json_deep_copy(supplies);
}
