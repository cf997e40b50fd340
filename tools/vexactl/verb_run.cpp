// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "output.h"
#include "progress.h"
#include "text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <libvexa.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr size_t most_arguments = 48; // that the library hands to the script
constexpr const char *scripts[] = {"/etc/syswrapper.sh", "/usr/etc/syswrapper.sh"};

// A variable argument list ends at its first nullptr, so that all places can be passed on.
template <size_t... I>
void run_action(int wait, const arguments &args, std::index_sequence<I...>)
{
    syswrapper_impl(wait, args.operand(0), args.operand(I + 1)..., nullptr);
}

int run(const arguments &args, output &out)
{
    if (args.count() > most_arguments + 1)
        return out.fail(status_usage, "run: at most " + std::to_string(most_arguments) + " arguments for an action");
    const auto script =
        std::find_if(std::begin(scripts), std::end(scripts), [](const char *path) { return access(path, R_OK) == 0; });
    if (script == std::end(scripts))
        return out.fail(status_unavailable,
                        "no action script: neither " + std::string{scripts[0]} + " nor " + scripts[1] + " can be read");
    const bool wait = args.has("wait");
    const progress running{visible(args.operand(0))};
    run_action(wait, args, std::make_index_sequence<most_arguments>{});
    if (out.for_people())
        return status_ok;
    return out.show(
        {json_ref{object({{"script", text(*script)}, {"action", text(args.operand(0))}, {"waited", flag(wait)}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "run",
     .operands = "ACTION [ARGS...]",
     .summary = "run an action of the device's script",
     .options = {{{"wait", nullptr, "return when the action has ended"}}},
     .example = "vexactl run --wait restart-service -- sshd --now",
     .run = run},
};

} // namespace

const verb_family run_family = verbs;
