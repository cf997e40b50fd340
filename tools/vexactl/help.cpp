// SPDX-License-Identifier: MIT
#include "help.h"

#include "table.h"

namespace {

constexpr palette plain;

std::string spelled(const option &o)
{
    const std::string letter = o.letter ? std::string{"-"} + o.letter + ", " : "";
    return letter + "--" + o.name + (o.value ? std::string{" "} + o.value : "");
}

std::string option_lines(std::span<const option> options)
{
    table lines{{{}, {"", false, true}}};
    for (const option &o : options)
        if (o.name)
            lines.row({{spelled(o)}, {o.help}});
    return lines.render(plain, 2);
}

std::string usage_of(const verb &v)
{
    std::string line = std::string{"vexactl "} + v.name;
    if (*v.operands)
        line += std::string{" "} + v.operands;
    for (const option &o : v.options)
        if (o.name)
            line += " [--" + std::string{o.name} + (o.value ? std::string{" "} + o.value : "") + "]";
    return line;
}

std::string verb_help(const verb &v)
{
    std::string out = "usage: " + usage_of(v) + " [options]\n\n  " + (v.summary ? v.summary : "") + "\n";
    if (v.options[0].name)
        out += "\nOptions:\n" + option_lines(v.options);
    out += "\nEvery command takes:\n" + option_lines(common_options());
    return out + (v.example ? std::string{"\nExample:\n  "} + v.example + "\n" : "");
}

std::vector<const verb *> verbs_of(const arguments &args)
{
    if (args.command())
        return {args.command()};
    std::vector<const verb *> found;
    for (const verb_family &verbs : verb_table())
        for (const verb &v : verbs)
            if (v.summary && (args.family().empty() || std::string{v.name}.rfind(args.family() + " ", 0) == 0))
                found.push_back(&v);
    return found;
}

std::string verb_lines(const arguments &args)
{
    table lines{{{}, {"", false, true}}};
    for (const verb *v : verbs_of(args))
        lines.row({{std::string{v->name} + (*v->operands ? " " : "") + v->operands}, {v->summary}});
    return lines.render(plain, 2);
}

json_t *options_document(std::span<const option> options)
{
    json_t *all = list();
    for (const option &o : options)
        if (o.name)
            append(all, object({{"name", text(o.name)}, {"value", text_or_null(o.value)}, {"help", text(o.help)}}));
    return all;
}

} // namespace

std::string help_text(const arguments &args)
{
    if (args.command())
        return verb_help(*args.command());
    const std::string family = args.family().empty() ? "" : " " + args.family();
    return "usage: vexactl" + family + " COMMAND [options]\n\nCommands (--help after one tells more):\n" +
           verb_lines(args) + "\nOptions:\n" + option_lines(common_options()) +
           "\nExit status: 0; 1 not found, or the answer is no; 2 wrong command line;\n"
           "3 the device cannot answer.\n";
}

json_t *help_document(const arguments &args)
{
    json_t *commands = list();
    for (const verb *v : verbs_of(args))
        append(commands, object({{"command", text(v->name)},
                                 {"operands", text(v->operands)},
                                 {"summary", text_or_null(v->summary)},
                                 {"options", options_document(v->options)},
                                 {"example", text_or_null(v->example)}}));
    return object({{"commands", commands}, {"options", options_document(common_options())}});
}
