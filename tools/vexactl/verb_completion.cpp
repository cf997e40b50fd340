// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "completion.h"
#include "output.h"
#include "text.h"

namespace {

// Each shell asks `vexactl completion words` for candidates: all complete from the one verb table.
constexpr struct {
    const char *shell, *script;
} scripts[] = {
    {"bash", R"sh(_vexactl() {
    local IFS=$'\n'
    COMPREPLY=($(vexactl completion words -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
    [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -F _vexactl vexactl
)sh"},
    {"zsh", R"sh(#compdef vexactl
_vexactl() {
    local -a found
    found=(${(f)" $(vexactl completion words-- "${(@)words[2,CURRENT]}" 2 > / dev / null) "})
                if ((${#found}));
then compadd - a found;
else _files;
fi
} // namespace
compdef _vexactl vexactl
)sh"},
    {"fish",
     R"sh(complete -c vexactl -a '(vexactl completion words -- (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null)'
)sh"},
};

int words(const arguments &args, output &out)
{
    std::vector<const char *> given;
    for (size_t i = 1; i < args.count(); i++)
        given.push_back(args.operand(i));
    std::string lines;
    for (const std::string &name : candidates(given))
        if (visible(name) == name) // a shell would take anything else apart
            lines += name + "\n";
    return out.write(lines);
}

int completion(const arguments &args, output &out)
{
    const std::string what = args.operand(0);
    if (what == "words")
        return words(args, out);
    for (const auto &s : scripts)
        if (what == s.shell)
            return args.count() == 1 ? out.write(s.script) : out.fail(status_usage, "completion: one shell at a time");
    return out.fail(status_usage, "completion: '" + what + "' is none of bash, zsh, fish");
}

constexpr verb verbs[] = {
    {.name = "completion",
     .operands = "SHELL [WORDS...]",
     .summary = "the script that lets bash, zsh or fish complete these commands",
     .options = {},
     .example = "vexactl completion bash > /etc/bash_completion.d/vexactl",
     .run = completion},
};

} // namespace

const verb_family completion_family = verbs;
