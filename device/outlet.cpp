// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "device/bus_call.h"
#include "device/last_answer.h"

namespace {

constexpr char log_tag[] = "libvexa_power";
constexpr char table[] = "outlet_table";

last_answer cached;

struct index_text {
    explicit index_text(const json_t *outlet)
    {
        (void)snprintf(text, sizeof text, "%lld",
                       static_cast<long long>(json_integer_value(json_object_get(outlet, "index"))));
    }
    char text[24];
};

// The entries by their index; of two with the same the first.
json_ref by_index(json_t *outlets)
{
    json_ref known{json_object()};
    size_t i;
    json_t *outlet;
    json_array_foreach(outlets, i, outlet)
    {
        const index_text index{outlet};
        if (!json_object_get(known.get(), index.text) && json_object_set(known.get(), index.text, outlet) != 0)
            return nullptr;
    }
    return known;
}

bool is_outlet(const json_t *entry)
{
    return json_is_object(entry) && json_is_integer(json_object_get(entry, "index"));
}

bool are_outlets(const json_t *entries)
{
    if (!json_is_array(entries))
        return false;
    size_t i;
    const json_t *entry;
    json_array_foreach(entries, i, entry)
    {
        if (!is_outlet(entry))
            return false;
    }
    return true;
}

bool merge_outlets(json_t *outlets, const json_t *entries)
{
    const json_ref known = by_index(outlets);
    if (!known)
        return false;
    size_t i;
    const json_t *entry;
    json_array_foreach(entries, i, entry)
    {
        const index_text index{entry};
        const json_ref copy{json_deep_copy(entry)};
        json_t *outlet = json_object_get(known.get(), index.text);
        if (!copy || (outlet ? json_object_update(outlet, copy.get())
                             : json_array_append(outlets, copy.get()) |
                                   json_object_set(known.get(), index.text, copy.get())) != 0)
            return false;
    }
    return true;
}

// Everything but the table, which is merged entry by entry.
bool merge_totals(json_t *state, const json_t *update)
{
    const json_ref totals{json_deep_copy(update)};
    if (!totals)
        return false;
    (void)json_object_del(totals.get(), table);
    return json_object_update(state, totals.get()) == 0;
}

} // namespace

extern "C" json_t *vexa_outlet_get_outlet_status_json(unsigned max_age_s)
{
    if (const json_t *known = cached.younger_than(max_age_s)) {
        log_debug("use cached outlet status");
        return json_deep_copy(known);
    }
    cached.keep(nullptr);
    json_ref answer = ask_status("power.outlet", table, __func__);
    if (!answer)
        return nullptr;
    if (!are_outlets(json_object_get(answer.get(), table))) {
        log_err("Wrong power.outlet json on line %d: %s", 1, "outlet_table is no array of outlets");
        return nullptr;
    }
    json_t *copy = json_deep_copy(answer.get());
    log_debug("init cached outlet status with %d outlets done",
              int(json_array_size(json_object_get(answer.get(), table))));
    cached.keep(std::move(answer));
    return copy;
}

extern "C" int vexa_outlet_status_update_json_payload(const json_t *update)
{
    const json_t *entries = json_object_get(update, table);
    if (!cached.get() || !json_is_object(update) || (entries && !are_outlets(entries)))
        return -1;
    json_ref merged{json_deep_copy(cached.get())};
    if (!merged || !merge_outlets(json_object_get(merged.get(), table), entries) || !merge_totals(merged.get(), update))
        return -1;
    cached.keep(std::move(merged));
    return 0;
}
