/* SPDX-License-Identifier: MIT */
/* A host that tells each period, as one line of JSON, how its device and its Wi-Fi clients are, until SIGINT or SIGTERM
 * comes or it has told as often as its second argument says; 0 is for ever. With "traces" it tells the cloud, too.
 *
 *     periodic_reporter [SECONDS [COUNT [traces]]]
 */
#include <event2/event.h>
#include <jansson.h>
#include <libvexa.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>

static struct event_base *loop;
static long reports_left;
static int sends_traces;

static json_t *memory(void)
{
    vexa_meminfo m;
    return meminfo(&m) == 0 ? json_real(m.used_percent) : json_null();
}

/* How many clients an interface has and how well they are served, from 0 to 100. */
static json_t *vap_state(const char *vap)
{
    vexa_list *stations = get_stalist(vap);
    json_int_t clients = 0, scored = 0, scores = 0;
    if (!stations)
        return json_null();
    for (vexa_list *link = stations->next; link != stations; link = link->next) {
        stainfo *station = (stainfo *)link; /* the links come first */
        clients++;
        if (!station->valid || vexa_sta_ht_get_stats(station, 0) < 0)
            continue;
        calc_sta_satisfaction(station);
        if (station->satisfaction.score_now >= 0) {
            scores += station->satisfaction.score_now;
            scored++;
        }
    }
    free_stalist(stations);
    return json_pack("{s:I, s:o}", "clients", clients, "satisfaction",
                     scored > 0 ? json_integer(vexa_avg_round(scores, scored)) : json_null());
}

static json_t *vap_states(void)
{
    vap_entry vaps[VEXA_MAX_VAPS];
    json_t *by_name = json_object();
    const int known = enum_vaps(vaps, VEXA_MAX_VAPS);
    for (int i = 0; i < known; i++)
        json_object_set_new(by_name, vaps[i].ifname, vap_state(vaps[i].ifname));
    return by_name;
}

static json_t *report(void)
{
    char now[32] = "";
    get_system_time_str(now, sizeof now);
    const int internet = system_internet_status();
    return json_pack("{s:s, s:s, s:s, s:I, s:o, s:o, s:o}", "device", board_identify()->name, "mac", get_main_mac_str(),
                     "time", now, "uptime", (json_int_t)get_uptime_from_proc(), "internet",
                     internet < 0 ? json_null() : json_integer(internet), "memory_used_percent", memory(), "vaps",
                     vap_states());
}

static void on_period(int fd, short what, void *arg)
{
    (void)fd, (void)what, (void)arg;
    json_t *document = report();
    if (!document || json_dumpf(document, stdout, JSON_COMPACT) != 0 || puts("") < 0 || fflush(stdout) != 0)
        fputs("periodic_reporter: this report is lost\n", stderr);
    else if (sends_traces && send_trace_simple("example", "state", json_incref(document)) != 0)
        fputs("periodic_reporter: the cloud did not take this report\n", stderr);
    json_decref(document);
    if (reports_left > 0 && --reports_left == 0)
        event_base_loopbreak(loop);
}

static void on_end(int number, short what, void *arg)
{
    (void)number, (void)what, (void)arg;
    event_base_loopbreak(loop);
}

static int run(long seconds)
{
    const struct timeval period = {seconds, 0};
    struct event *timer = event_new(loop, -1, EV_PERSIST, on_period, NULL);
    struct event *interrupt = event_new(loop, SIGINT, EV_SIGNAL, on_end, NULL);
    struct event *termination = event_new(loop, SIGTERM, EV_SIGNAL, on_end, NULL);
    int result = EXIT_FAILURE;
    if (timer && interrupt && termination) {
        event_add(timer, &period);
        event_add(interrupt, NULL);
        event_add(termination, NULL);
        event_active(timer, EV_TIMEOUT, 1); /* the first report at once */
        result = event_base_dispatch(loop) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    struct event *const own[] = {timer, interrupt, termination};
    for (size_t i = 0; i < sizeof own / sizeof *own; i++)
        if (own[i])
            event_free(own[i]);
    return result;
}

int main(int argc, char **argv)
{
    const long seconds = argc > 1 ? strtol(argv[1], NULL, 10) : 60;
    reports_left = argc > 2 ? strtol(argv[2], NULL, 10) : 0;
    sends_traces = argc > 3 && strcmp(argv[3], "traces") == 0;
    libvexa_log_level = 2; /* errors and warnings */
    libvexa_log_use_syslog = 0;
    loop = event_base_new();
    if (seconds <= 0 || !loop)
        return EXIT_FAILURE;
    const int result = run(seconds);
    event_base_free(loop);
    return result;
}
