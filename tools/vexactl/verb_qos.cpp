// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "message.h"
#include "qos.h"

#include <charconv>
#include <cstring>
#include <optional>

namespace {

template <typename T>
std::optional<T> number_of(std::string_view digits)
{
    T value{};
    const auto [end, wrong] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (wrong != std::errc{} || end != digits.data() + digits.size())
        return {};
    return value;
}

// In kbit/s. Of a maximum there may be "none", which is negative.
std::optional<int64_t> rate_of(const char *word, bool is_maximum)
{
    if (is_maximum && strcmp(word, "none") == 0)
        return -1;
    const std::optional<int64_t> rate = number_of<int64_t>(word);
    return rate && *rate >= 0 ? rate : std::nullopt;
}

// Returns status_ok when the limits are in force.
int make_table(output &out)
{
    if (init_qos_info() != 0)
        return out.fail(status_unavailable, std::string{"cannot read "} + running_configuration);
    return status_ok;
}

int qos_show(const arguments &, output &out)
{
    unique_cfg cfg;
    const std::string trouble = load(running_configuration, cfg);
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    if (const int failed = make_table(out); failed != status_ok)
        return failed;
    return out.show({limit_documents(cfg.get()), limit_columns, "no limits are in force"});
}

int change_rule(const arguments &args, output &out, int (*change)(const char *, uint32_t))
{
    const char *vap = args.operand(0);
    const std::optional<uint32_t> aid = number_of<uint32_t>(args.operand(1));
    if (!aid)
        return out.fail(status_usage, args.operand(1) + std::string{" is no association id"});
    if (const int failed = make_table(out); failed != status_ok)
        return failed;
    if (change(vap, *aid) != 0)
        return out.fail(status_negative, "no limits are in force on '" + std::string{vap} + "'");
    return out.for_people() ? int(status_ok)
                            : out.show({json_ref{object({{"vap", text(vap)}, {"aid", number(*aid)}})}, {}});
}

int qos_add(const arguments &args, output &out)
{
    return change_rule(args, out, add_sta_qosrule);
}

int qos_remove(const arguments &args, output &out)
{
    return change_rule(args, out, remove_sta_qosrule);
}

int qos_rate(const arguments &args, output &out)
{
    const char *mac = args.operand(0);
    if (uint8_t octets[6]; !read_mac(mac, octets))
        return out.fail(status_usage, std::string{mac} + " is no hardware address");
    static constexpr const char *keys[] = {"ul_min", "ul_max", "dl_min", "dl_max"};
    int64_t rates[std::size(keys)];
    json_ref shown{object({{"mac", text(mac)}})};
    for (size_t i = 0; i < std::size(keys); i++) {
        const std::optional<int64_t> rate = rate_of(args.operand(i + 1), i % 2 == 1);
        if (!rate)
            return out.fail(status_usage, args.operand(i + 1) + std::string{" is no rate in kbit/s"});
        rates[i] = *rate;
        json_object_set_new(shown.get(), keys[i], number(*rate));
    }
    if (const int failed = make_table(out); failed != status_ok)
        return failed;
    if (update_sta_qosrate(mac, rates[0], rates[1], rates[2], rates[3]) != 0)
        return out.fail(status_negative, std::string{"no VAP with limits knows "} + mac);
    return out.for_people() ? int(status_ok) : out.show({std::move(shown), {}});
}

constexpr verb verbs[] = {
    {.name = "qos show",
     .summary = "the limits for stations that are in force, in kbit/s",
     .options = {},
     .example = "vexactl qos show",
     .run = qos_show},
    {.name = "qos add",
     .operands = "VAP AID",
     .summary = "set the limits of a VAP for a station",
     .options = {},
     .example = "vexactl qos add ra1 7",
     .run = qos_add},
    {.name = "qos remove",
     .operands = "VAP AID",
     .summary = "delete the rules of a station",
     .options = {},
     .example = "vexactl qos remove ra1 7",
     .run = qos_remove},
    {.name = "qos rate",
     .operands = "MAC UL_MIN UL_MAX DL_MIN DL_MAX",
     .summary = "set limits of a station's own, in kbit/s; a maximum may be \"none\"",
     .options = {},
     .example = "vexactl qos rate 02:57:00:00:00:01 64 5000 64 none",
     .run = qos_rate},
};

} // namespace

const verb_family qos_family = verbs;
