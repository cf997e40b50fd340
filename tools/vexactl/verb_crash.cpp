// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "configuration.h"
#include "crash_logs.h"
#include "output.h"
#include "text.h"

#include <climits>
#include <libvexa.h>

namespace {

int crash_status(const arguments &, output &out)
{
    return out.show({crash_state(), crash_columns});
}

int done(output &out, const char *key, const char *words)
{
    return out.for_people() ? out.write(words) : out.show({json_ref{object({{key, flag(true)}})}, {}});
}

int crash_send(const arguments &args, output &out)
{
    if (!has_oops())
        return out.fail(status_negative, "the kernel keeps no crash");
    const int result = send_kernel_crash();
    if (result == -ENOENT)
        return out.fail(status_negative, "no report may go out now; see vexactl crash status");
    if (result != 0)
        return out.fail(status_unavailable, "the crash was not reported; -v shows why");
    if (args.has("clear") && oops_clear() != 0)
        return out.fail(status_unavailable, "the crash was reported, but it is still kept");
    return done(out, "reported", "reported\n");
}

constexpr const char *kinds[] = {"core", "app", "oom", "ram"}; // in the order of their numbers

// The numbers of a report, as options; false when one is none.
bool read_number(const arguments &args, const char *option, int &number)
{
    const char *value = args.value(option, "0");
    char *end;
    errno = 0;
    const long read = strtol(value, &end, 10);
    number = int(read);
    return *value && !*end && errno == 0 && read >= INT_MIN && read <= INT_MAX;
}

int crash_binary(const arguments &args, output &out)
{
    int pid, signal, crashes, uptime;
    if (!read_number(args, "pid", pid) || !read_number(args, "signal", signal) ||
        !read_number(args, "crashes", crashes) || !read_number(args, "uptime", uptime))
        return out.fail(status_usage, "crash binary: --pid, --signal, --crashes and --uptime take numbers");
    std::string dump;
    const std::string trouble = args.count() > 1 ? load(args.operand(1), dump) : "";
    if (!trouble.empty())
        return out.fail(status_unavailable, trouble);
    const std::string_view chosen = args.value("kind", kinds[0]);
    int kind = 0;
    while (chosen != kinds[kind])
        kind++;
    if (send_crash_binary_data(args.operand(0), pid, signal, crashes, uptime, dump.data(), int(dump.size()), kind) != 0)
        return out.fail(status_unavailable, "nothing was reported; -v and vexactl crash status show why");
    return done(out, "reported", "reported\n");
}

int crash_logs(const arguments &args, output &out)
{
    if (args.has("uplink") && !args.has("send"))
        return out.fail(status_usage, "crash logs: --uplink goes with --send");
    if (args.has("send") && check_vwire_disconnect_logs(args.value("uplink"), 1) != 0)
        return out.fail(status_unavailable, "the logs cannot be worked on; -v shows why");
    return out.show({isolation_logs(), isolation_columns, "no isolation logs"});
}

int crash_next(const arguments &, output &out)
{
    json_ref log{get_next_crash_log()};
    if (!log)
        return out.fail(status_negative, "no isolation log waits for a consumer");
    if (!out.for_people())
        return out.show({std::move(log), {}});
    static constexpr column columns[] = {{"filename", "Log"}, {"uplink", "Uplink"}, {"posted", "Posted", kind::on_off}};
    json_t *payload = json_object_get(log.get(), "payload");
    return out.show({json_ref{object({{"filename", text(vexa_json_get_str(log.get(), "filename", ""))},
                                      {"uplink", text(vexa_json_get_str(payload, "uplink_model", ""))},
                                      {"posted", flag(vexa_json_get_bool(log.get(), "sent_to_analytics", 0))}})},
                     columns});
}

int crash_finish(const arguments &args, output &out)
{
    if (!mark_crash_log_finished(args.operand(0)))
        return out.fail(status_negative, format("no unfinished isolation log \"%s\"", args.operand(0)));
    return done(out, "finished", "finished\n");
}

constexpr verb verbs[] = {
    {.name = "crash status",
     .summary = "what there is to report, and whether it may go out",
     .options = {},
     .example = "vexactl crash status",
     .run = crash_status},
    {.name = "crash send",
     .summary = "report the kernel's last crash, once",
     .options = {{{"clear", nullptr, "then save it to /var/run/last-crashlog.txt and drop it"}}},
     .example = "vexactl crash send --clear",
     .run = crash_send},
    {.name = "crash binary",
     .operands = "NAME [DUMP]",
     .summary = "report a program's death, with its dump",
     .options = {{{"kind", "KIND", "core when not given; ram takes none of the numbers", "core|app|oom|ram"},
                  {"pid", "N", "the process, whose lines of the log are sent along"},
                  {"signal", "N", "what ended it"},
                  {"crashes", "N", "how often it died"},
                  {"uptime", "SECONDS", "how long it lived"}}},
     .example = "vexactl crash binary hostapd /tmp/core --pid 812 --signal 11",
     .run = crash_binary},
    {.name = "crash logs",
     .summary = "the isolation logs and what became of them",
     .options = {{{"send", nullptr, "post first what is not posted yet"},
                  {"uplink", "MODEL", "of the device above, for logs seen for the first time"}}},
     .example = "vexactl crash logs --send",
     .run = crash_logs},
    {.name = "crash next",
     .summary = "the next isolation log for a consumer; in JSON with its contents",
     .options = {},
     .example = "vexactl crash next --json | jq -r .file_data | base64 -d | tar -tz",
     .run = crash_next},
    {.name = "crash finish",
     .operands = "NAME",
     .summary = "the consumer is done with an isolation log",
     .options = {},
     .example = "vexactl crash finish vwire-0001.tgz",
     .run = crash_finish},
};

} // namespace

const verb_family crash_family = verbs;
