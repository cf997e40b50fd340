// SPDX-License-Identifier: MIT
#include "report.h"

#include "arguments.h"
#include "text.h"

namespace {

constexpr void (*families[])(const report_source &, std::vector<section> &) = {
    report_device,
    report_interface,
    report_inventory,
    report_config,
};

int report(const arguments &args, output &out)
{
    const char *path = args.value("file", running_configuration);
    std::string bytes;
    unique_cfg cfg;
    const std::string trouble = load(path, bytes, cfg);
    std::vector<section> page;
    const key_index keys{cfg.get()};
    for (const auto family : families)
        family({path, trouble.empty(), bytes, cfg.get(), keys}, page);
    const char *name = keys.value("system.hostname");
    const int shown = out.page(name ? "Report of " + visible(name) : "Device report", page);
    return trouble.empty() ? shown : out.fail(status_unavailable, trouble);
}

constexpr verb verbs[] = {
    {.name = "report",
     .summary = "one page about the device",
     .options = {},
     .example = "vexactl report",
     .run = report},
};

} // namespace

section record_section(const char *key, const char *title, json_t *document, std::span<const column> columns)
{
    section made{key, title, {json_ref{document}, columns}};
    made.body.side_by_side = true;
    return made;
}

const verb_family report_family = verbs;
