// SPDX-License-Identifier: MIT
#include "inventory.h"
#include "report.h"

#include <algorithm>

namespace {

constexpr size_t most_rows = 5;

// those that take most memory
json_ref top_processes()
{
    const json_ref all = process_documents(false);
    std::vector<json_t *> sorted;
    for (size_t i = 0; i < json_array_size(all.get()); i++)
        sorted.push_back(json_array_get(all.get(), i));
    const auto rss = [](const json_t *process) { return json_integer_value(json_object_get(process, "rss")); };
    std::stable_sort(sorted.begin(), sorted.end(), [&](const json_t *a, const json_t *b) { return rss(a) > rss(b); });
    json_ref rows{list()};
    for (size_t i = 0; i < std::min(most_rows, sorted.size()); i++)
        append(rows.get(), json_incref(sorted[i]));
    return rows;
}

section memory()
{
    static constexpr column columns[] = {{"MemTotal", "All"},    {"MemFree", "Free"},  {"MemAvailable", "Available"},
                                         {"Buffers", "Buffers"}, {"Cached", "Cached"}, {"Slab", "Slab"}};
    json_ref document = memory_document();
    section made = record_section("memory", "Memory (kB)", document ? document.release() : object({}), columns);
    made.picture = {plot::shape::share, "MemTotal", "MemAvailable"};
    return made;
}

} // namespace

void report_inventory(const report_source &, std::vector<section> &page)
{
    page.push_back(memory());
    page.push_back({"processes", "Top processes", {top_processes(), process_columns}});
    json_ref hosts = host_documents(most_rows);
    page.push_back({"hosts", "Top hosts", {hosts ? std::move(hosts) : json_ref{list()}, host_columns}});
}
