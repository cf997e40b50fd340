// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "config_check.h"
#include "configuration.h"
#include "output.h"

namespace {

constexpr column entry_columns[] = {{"key", "Key"}, {"value", "Value", kind::text, true}};

json_t *entry(const char *key, const char *value)
{
    return object({{"key", text(key)}, {"value", text(value)}});
}

const char *chosen_file(const arguments &args)
{
    return args.value("file", running_configuration);
}

answer entries(const cfg_it *it)
{
    answer found{json_ref{list()}, entry_columns};
    found.pairs = true;
    for (; it; it = it->next)
        append(found.document.get(), entry(it->key, it->value));
    return found;
}

int config_get(const arguments &args, output &out)
{
    unique_cfg cfg;
    const std::string trouble = load(chosen_file(args), cfg);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    const char *key = args.operand(0);
    const char *value = get_value(cfg.get(), args.value("default"), "%s", key);
    if (!value)
        return out.fail(status_negative, std::string{"no entry '"} + key + "' in " + chosen_file(args));
    if (out.for_people())
        return out.show({json_ref{text(value)}, {}});
    answer found{json_ref{entry(key, value)}, {}};
    found.pairs = true;
    return out.show(found);
}

int config_list(const arguments &args, output &out)
{
    unique_cfg cfg;
    const std::string trouble = load(chosen_file(args), cfg);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    const char *prefix = args.operand(0);
    const unique_cfg_it found{get_cfg_it(cfg.get(), 0, "%s", prefix ? prefix : "")};
    const int shown = out.show(entries(found.get()));
    if (!found && prefix)
        return out.fail(status_negative, std::string{"no key begins with '"} + prefix + "' in " + chosen_file(args));
    return shown;
}

int config_section(const arguments &args, output &out)
{
    const std::string prefix = args.operand(0);
    const char *postfix = args.value("postfix");
    if (postfix && *postfix != '.')
        return out.fail(status_usage, std::string{"config section: a postfix begins with '.': '"} + postfix + "'");
    unique_cfg cfg;
    const std::string trouble = load(chosen_file(args), cfg);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    const unique_cfg_it found{get_cfg_section(cfg.get(), postfix, args.value("value"), "%s", prefix.c_str())};
    const int shown = out.show(entries(found.get()));
    if (!found)
        return out.fail(status_negative, "no entry " + prefix + "NUMBER" + (postfix ? postfix : "") + " in " +
                                             chosen_file(args) +
                                             (prefix.back() == '.' ? "" : "; a section's prefix ends with '.'"));
    return shown;
}

json_t *change(const cfg_it &it, const key_index &before, const key_index &after)
{
    const char *old_value = before.value(it.key), *new_value = after.value(it.key);
    const char *what = !new_value ? "removed" : old_value ? "changed" : "added";
    return object({{"change", text(what)},
                   {"key", text(it.key)},
                   {"old", text_or_null(new_value ? old_value : it.value)},
                   {"new", text_or_null(new_value ? it.value : nullptr)}});
}

int config_diff(const arguments &args, output &out)
{
    static constexpr column columns[] = {{"change", "", kind::change},
                                         {"key", "Key", kind::text, true},
                                         {"old", "Old", kind::text, true},
                                         {"new", "New", kind::text, true}};
    unique_cfg before, after;
    for (const auto &[path, cfg] : {std::pair{args.operand(0), &before}, std::pair{args.operand(1), &after}}) {
        const std::string trouble = load(path, *cfg);
        if (!trouble.empty())
            return out.fail(status_unavailable, trouble);
    }
    const unique_cfg_it changes{get_cfg_diff_it(before.get(), after.get())};
    const key_index old_keys{before.get()}, new_keys{after.get()};
    answer found{json_ref{list()}, columns};
    for (const cfg_it *it = changes.get(); it; it = it->next)
        append(found.document.get(), change(*it, old_keys, new_keys));
    const int shown = out.show(found);
    const size_t count = json_array_size(found.document.get());
    return count
               ? out.fail(status_negative, std::to_string(count) + (count == 1 ? " entry differs" : " entries differ"))
               : shown;
}

int config_check(const arguments &args, output &out)
{
    static constexpr column columns[] = {{"line", "Line", kind::number},
                                         {"problem", "Problem"},
                                         {"key", "Key", kind::text, true},
                                         {"text", "What", kind::text, true}};
    std::string bytes;
    const std::string trouble = load(chosen_file(args), bytes);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    answer found{json_ref{list()}, columns};
    found.when_empty = "nothing suspicious";
    for (const finding &f : check_configuration(bytes))
        append(found.document.get(), object({{"line", number(static_cast<int64_t>(f.line))},
                                             {"problem", text(f.problem)},
                                             {"key", text(f.key)},
                                             {"text", text(f.text)}}));
    const int shown = out.show(found);
    const size_t count = json_array_size(found.document.get());
    return count ? out.fail(status_negative,
                            std::to_string(count) + (count == 1 ? " finding in " : " findings in ") + chosen_file(args))
                 : shown;
}

constexpr verb verbs[] = {
    {.name = "config get",
     .operands = "KEY",
     .summary = "the value of one entry",
     .options = {{{"default", "V", "answer V when there is no such entry"}}},
     .example = "vexactl config get radio.1.channel --default auto",
     .run = config_get},
    {.name = "config list",
     .operands = "[PREFIX]",
     .summary = "the entries whose key begins with PREFIX, or all",
     .options = {},
     .example = "vexactl config list radio.1.",
     .run = config_list},
    {.name = "config section",
     .operands = "PREFIX",
     .summary = "the entries of a numbered section, sorted",
     .options = {{{"postfix", "P", "what follows the number, from its '.' on; default nothing"},
                  {"value", "V", "only entries with this value"}}},
     .example = "vexactl config section wireless. --postfix .ssid",
     .run = config_section},
    {.name = "config diff",
     .operands = "OLD NEW",
     .summary = "what differs between two configuration files",
     .options = {},
     .example = "vexactl config diff /tmp/system.cfg /tmp/running.cfg",
     .run = config_diff},
    {.name = "config check",
     .summary = "what is suspicious in the configuration file",
     .options = {},
     .example = "vexactl config check --file /tmp/new.cfg",
     .run = config_check},
};

} // namespace

const verb_family config_family = verbs;
