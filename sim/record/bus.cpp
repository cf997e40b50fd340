// SPDX-License-Identifier: MIT
#include "sim/record/disguise.h"
#include "sim/record/recording.h"

#include <jansson.h>
#include <libvexa.h>
#include <memory>

namespace sim {

namespace {

struct drop_json {
    void operator()(json_t *value) const noexcept { json_decref(value); }
};

void add(json_t *objects, const char *name, json_t *answer)
{
    if (answer)
        json_object_set_new(objects, name, json_pack("{s:o}", "status", answer));
}

} // namespace

// The answers that the library asks for.
void record_bus(disguise &names, const std::filesystem::path &file)
{
    const std::unique_ptr<json_t, drop_json> objects{json_object()};
    add(objects.get(), "power.outlet", vexa_outlet_get_outlet_status_json(0));
    if (json_t *supplies = vexa_psu_get_json_psu_table(0))
        add(objects.get(), "power.psu", json_pack("{s:o}", "psu_table", supplies));
    const std::unique_ptr<char, decltype(&free)> text{
        json_dumps(objects.get(), JSON_INDENT(2) | JSON_REAL_PRECISION(9)), free};
    if (text && json_object_size(objects.get()) != 0)
        write_file(file, names.words(text.get()) + '\n');
}

} // namespace sim
