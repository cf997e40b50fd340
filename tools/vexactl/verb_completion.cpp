// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "completion.h"
#include "completion_scripts.h"
#include "output.h"
#include "text.h"

#include <cstring>

namespace {

// Each shell asks `vexactl complete` for candidates: all complete from the one verb table.
constexpr struct {
    const char *shell, *script;
} scripts[] = {
    {"bash", bash_completion},
    {"zsh", zsh_completion},
    {"fish", fish_completion},
};

int complete(const arguments &args, output &out)
{
    std::vector<const char *> words;
    for (size_t i = 0; i < args.count(); i++)
        words.push_back(args.operand(i));
    answer found{json_ref{list()}, {}};
    std::string lines;
    for (const std::string &name : candidates(words)) {
        if (visible(name) != name)
            continue; // a shell would take it apart
        append(found.document.get(), text(name));
        lines += name + "\n";
    }
    return out.for_people() ? out.write(lines) : out.show(found);
}

int completion(const arguments &args, output &out)
{
    for (const auto &s : scripts)
        if (strcmp(args.operand(0), s.shell) == 0)
            return out.for_people()
                       ? out.write(s.script)
                       : out.show({json_ref{object({{"shell", text(s.shell)}, {"script", text(s.script)}})}, {}});
    return out.fail(status_usage, std::string{"completion: '"} + args.operand(0) + "' is none of bash, zsh, fish");
}

constexpr verb verbs[] = {
    {.name = "completion",
     .operands = "SHELL",
     .summary = "a script: how bash, zsh or fish complete these",
     .options = {},
     .example = "vexactl completion bash > /etc/bash_completion.d/vexactl",
     .run = completion},
    {.name = "complete", .operands = "[WORDS...]", .options = {}, .run = complete},
};

} // namespace

const verb_family completion_family = verbs;
