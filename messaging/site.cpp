// SPDX-License-Identifier: MIT
#include "messaging/site.h"

#include "core/log.h"
#include "core/open_file.h"
#include "core/paths.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

constexpr char log_tag[] = "vexa_protocol";

constexpr char key_name[] = "corvo.key";
constexpr char group_name[] = "corvo.mcip";
constexpr size_t key_size = sizeof vexa_protocol_ctrl.key;

bool take_key(const char *digits, const char *func)
{
    const size_t length = strlen(digits);
    if (length != 2 * key_size) {
        log_err_as(func, "%s invalid len %zd", key_name, ssize_t(length));
        return false;
    }
    (void)hex2uchar(digits, vexa_protocol_ctrl.key, key_size);
    return true;
}

} // namespace

void read_device_id(const char *func)
{
    char serial[64];
    uint8_t(&id)[6] = vexa_protocol_ctrl.device_id;
    (void)hex2uchar(freadvalue(path_system_info, "serialno", serial, sizeof serial, "000000000000"), id, sizeof id);
    log_info_as(func, "VEXA_DEVICE[%02x:%02x:%02x:%02x:%02x:%02x]", id[0], id[1], id[2], id[3], id[4], id[5]);
}

bool read_site(const char *path, bool needs_group, site &out, const char *func)
{
    if (access(path, R_OK) != 0) {
        log_err_as(func, "Unable to access %s: %s", path, strerror(errno));
        return false;
    }
    out.cfg.reset(parse_stream(open_reader(path).get())); // parse() would wait for a FIFO
    if (!out.cfg) {
        log_err_as(func, "Unable to parse %s", path);
        return false;
    }
    const char *key = get_value(out.cfg.get(), nullptr, "%s", key_name);
    out.group = get_value(out.cfg.get(), nullptr, "%s", group_name);
    if (!key) {
        log_err_as(func, "no %s", key_name);
        return false;
    }
    if (!out.group && needs_group) {
        log_err_as(func, "no %s", group_name);
        return false;
    }
    if (!out.group)
        log_info_as(func, "no %s", group_name);
    return take_key(key, func);
}
