// SPDX-License-Identifier: MIT
#include "report.h"

#include "arguments.h"
#include "html.h"
#include "text.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

constexpr void (*families[])(const report_source &, std::vector<section> &) = {
    report_device, report_interface, report_wireless, report_power, report_inventory, report_crash, report_config,
};

int write_page(const std::string &file, const std::string &page, output &out)
{
    if (file == "-")
        return out.write(page);
    std::FILE *stream = std::fopen(file.c_str(), "we");
    const bool written = stream && std::fwrite(page.data(), 1, page.size(), stream) == page.size();
    const bool stored = stream && std::fclose(stream) == 0;
    return written && stored ? int(status_ok)
                             : out.fail(status_unavailable, "cannot write '" + file + "': " + strerror(errno));
}

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
    const std::string title = name ? "Report of " + visible(name) : "Device report";
    const char *file = args.value("html");
    const int shown = file ? write_page(file, html_page(title, page), out) : out.page(title, page);
    return trouble.empty() ? shown : out.fail(status_unavailable, trouble);
}

constexpr verb verbs[] = {
    {.name = "report",
     .summary = "one page about the device",
     .options = {{{"html", "FILE", "write it as a page with plots; - is standard output"}}},
     .example = "vexactl report --html report.html",
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
