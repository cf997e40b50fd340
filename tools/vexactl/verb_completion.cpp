// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "completion.h"
#include "output.h"
#include "text.h"

#include <cstring>

namespace {

// Each shell asks `vexactl complete` for candidates: all complete from the one verb table.
// clang-format off
constexpr struct {
    const char *shell, *script;
} scripts[] = {
    {"bash", R"sh(_vexactl() {
    local IFS=$'\n'
    COMPREPLY=($(vexactl complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
    [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -F _vexactl vexactl
)sh"},
    {"zsh", R"sh(#compdef vexactl
_vexactl() {
    local -a found
    found=("${(@f)$(vexactl complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
    if [[ -n $found ]]; then
        compadd -a found
    else
        _files
    fi
}
compdef _vexactl vexactl
)sh"},
    {"fish", R"sh(function __vexactl
    vexactl complete -- (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null
end
complete -c vexactl -n 'count (__vexactl) >/dev/null' -f -a '(__vexactl)'
)sh"},
};
// clang-format on

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
