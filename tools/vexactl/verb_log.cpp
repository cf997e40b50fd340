// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"

#include <cstring>
#include <libvexa.h>
#include <syslog.h>

namespace {

constexpr char level_words[] = "emerg|alert|crit|error|warning|notice|info|debug"; // in the order of their numbers

int log_text(const arguments &args, output &out)
{
    const std::vector<std::string> levels = split(level_words, '|');
    const std::string level = args.value("level", "info");
    int priority = 0;
    while (levels[static_cast<size_t>(priority)] != level)
        priority++;
    const char *module = args.value("module", "vexactl");
    libvexa_log(priority, module, "log", "%s", args.operand(0));
    if (out.for_people())
        return status_ok;
    return out.show(
        {json_ref{object({{"level", text(level)}, {"module", text(module)}, {"text", text(args.operand(0))}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "log",
     .operands = "TEXT",
     .summary = "write a line into the device's log",
     .options = {{{"level", "LEVEL", "emerg, alert, crit, error, warning, notice, info (default) or debug",
                   level_words},
                  {"module", "NAME", "module that the line names; default vexactl"}}},
     .example = "vexactl log --level warning 'antenna moved to the roof'",
     .run = log_text},
};

} // namespace

const verb_family log_family = verbs;
