// SPDX-License-Identifier: MIT
// This platform's driver is asked by private requests: there is no nl80211 service, and hosts are told so.
#include "core/log.h"

namespace {

constexpr char log_tag[] = "nl80211";

int not_implemented(const char *func)
{
    log_err_as(func, "%s: not implemented on current architecture", func);
    return -1;
}

} // namespace

extern "C" {

int qx_nl80211_service_init(void)
{
    return not_implemented(__func__);
}
void qx_nl80211_service_deinit(void)
{}
int qx_nl80211_register_command_callback(int, qx_nl80211_callback, void *)
{
    return not_implemented(__func__);
}
void qx_nl80211_deregister_command_callback(int)
{}
void *qx_nl80211_create_message(int, int)
{
    return nullptr;
}
int qx_nl80211_send_recv(void *, qx_nl80211_callback, void *)
{
    return -1;
}
int qx_nl80211_interface_info(const char *, void *)
{
    return -1;
}
int qx_nl80211_interface_power(const char *, int *)
{
    return -1;
}
const char *qx_nl80211_parent_interface(const char *)
{
    return nullptr;
}
int qx_nl80211_interface_set_power(const char *, int)
{
    return -1;
}

} // extern "C"
