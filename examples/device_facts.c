/* SPDX-License-Identifier: MIT */
/* Asked once, like a script: what a shell wants to know of its device, and 1 as the exit status without the internet.
 *
 *     eval "$(device_facts)" && echo "$model is online"
 */
#include <libvexa.h>

int main(void)
{
    libvexa_log_use_syslog = 0; /* log lines to standard error */

    cfg_entry *cfg = parse("/tmp/system.cfg"); /* NULL without one, and then each value is its default */
    const board *b = board_identify();
    const int online = system_internet_status() > 0;
    char up[32] = "";
    uptime2str((unsigned long)get_uptime_from_proc(), up, sizeof up);

    printf("model='%s'\n", b->name);
    printf("mac='%s'\n", get_main_mac_str());
    printf("radios=%d\n", b->radio_count);
    printf("poe_budget=%d\n", board_get_poe_budget());
    printf("ssh_port=%d\n", get_int32(cfg, 22, "sshd.port"));
    printf("networks=%u\n", get_cfg_section_count(cfg, ".ssid", NULL, "wireless."));
    printf("up='%s'\n", up);
    printf("online=%d\n", online);

    free_cfg(cfg);
    return online ? 0 : 1;
}
