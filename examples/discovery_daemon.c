/* SPDX-License-Identifier: MIT */
/* A complete host of the library: it greets the devices of its site each minute, prints and answers their greetings,
 * until SIGINT or SIGTERM comes or it has answered as many as its argument says.
 *
 *     discovery_daemon [COUNT]
 */
#include <event2/event.h>
#include <libvexa.h>
#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/time.h>

enum { METHOD_HELLO = 1, METHOD_WELCOME = 2, TYPE_TEXT = 1, ENCRYPTED = 1 };

/* A handler gets the payload alone, so what it works with is the process's. */
static struct event_base *loop;
static long greetings_left;
static char name[64];

/* Receivers drop a message whose number is the last one's. */
static void count_message(void)
{
    vexa_protocol_ctrl.tx_seq = (uint16_t)(vexa_protocol_ctrl.tx_seq % 0xfff + 1);
}

static void say(uint16_t method)
{
    count_message();
    if (vexa_protocol_send(name, (int)strlen(name), method, TYPE_TEXT, ENCRYPTED) < 0)
        fprintf(stderr, "discovery_daemon: nothing was sent\n"); /* the library has logged why */
}

static void print_message(const char *what, const char *payload)
{
    envelope header; /* stands right before the payload */
    char device[13];
    memcpy(&header, payload - sizeof header, sizeof header);
    uchar2lowerhex(header.device_id, sizeof header.device_id, device, sizeof device);
    printf("%s from %s: %.*s\n", what, device, (int)header.length, payload);
    fflush(stdout);
}

static void on_hello(const void *payload)
{
    print_message("hello", payload);
    say(METHOD_WELCOME);
    if (greetings_left > 0 && --greetings_left == 0)
        event_base_loopbreak(loop);
}

static void on_welcome(const void *payload)
{
    print_message("welcome", payload);
}

static const vexa_protocol_handler handlers[] = {
    {on_hello, METHOD_HELLO},
    {on_welcome, METHOD_WELCOME},
    {NULL, 0},
};

static void on_minute(int fd, short what, void *arg)
{
    (void)fd, (void)what, (void)arg;
    say(METHOD_HELLO);
}

static void on_end(int number, short what, void *arg)
{
    (void)number, (void)what, (void)arg;
    event_base_loopbreak(loop);
}

/* The name of this device: the host name of its configuration, else its model. */
static void take_name(void)
{
    cfg_entry *cfg = parse("/tmp/system.cfg");
    snprintf(name, sizeof name, "%s", get_value(cfg, board_identify()->name, "system.hostname"));
    free_cfg(cfg);
}

static int run(void)
{
    const struct timeval minute = {60, 0};
    struct event *timer = event_new(loop, -1, EV_PERSIST, on_minute, NULL);
    struct event *interrupt = event_new(loop, SIGINT, EV_SIGNAL, on_end, NULL);
    struct event *termination = event_new(loop, SIGTERM, EV_SIGNAL, on_end, NULL);
    int result = EXIT_FAILURE;
    if (timer && interrupt && termination && vexa_protocol_init(1) == 0) {
        vexa_protocol_ctrl.tx_seq = (uint16_t)time(NULL); /* not where an earlier run began */
        vexa_protocol_init_recv(loop, handlers);
        event_add(timer, &minute);
        event_add(interrupt, NULL);
        event_add(termination, NULL);
        say(METHOD_HELLO);
        result = event_base_dispatch(loop) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
        vexa_protocol_deinit();
    }
    struct event *const own[] = {timer, interrupt, termination};
    for (size_t i = 0; i < sizeof own / sizeof *own; i++)
        if (own[i])
            event_free(own[i]);
    return result;
}

int main(int argc, char **argv)
{
    libvexa_log_level = 4;      /* errors, warnings, notable events */
    libvexa_log_use_syslog = 0; /* to standard error */
    greetings_left = argc > 1 ? strtol(argv[1], NULL, 10) : 0;
    take_name();
    loop = event_base_new();
    if (!loop)
        return EXIT_FAILURE;
    const int result = run();
    event_base_free(loop);
    return result;
}
