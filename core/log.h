// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <syslog.h>

// One gate per kind of line, in front of the arguments. The file that logs defines `log_tag`, and the line carries
// the name of the function that it stands in (so a lambda never logs).
#define VEXA_LOG(gate, priority, func, ...)                                                                            \
    do {                                                                                                               \
        if (libvexa_log_level >= (gate))                                                                               \
            libvexa_log((priority), log_tag, (func), __VA_ARGS__);                                                     \
    } while (0)

#define log_err(...) VEXA_LOG(1, LOG_ERR, __func__, __VA_ARGS__)
#define log_warn(...) VEXA_LOG(2, LOG_WARNING, __func__, __VA_ARGS__)
#define log_info(...) VEXA_LOG(4, LOG_INFO, __func__, __VA_ARGS__)
#define log_debug(...) VEXA_LOG(8, LOG_DEBUG, __func__, __VA_ARGS__)
#define log_verbose(...) VEXA_LOG(16, LOG_DEBUG, __func__, __VA_ARGS__)

// For a helper that speaks for the function that called it.
#define log_err_as(func, ...) VEXA_LOG(1, LOG_ERR, func, __VA_ARGS__)
#define log_warn_as(func, ...) VEXA_LOG(2, LOG_WARNING, func, __VA_ARGS__)
#define log_info_as(func, ...) VEXA_LOG(4, LOG_INFO, func, __VA_ARGS__)
#define log_debug_as(func, ...) VEXA_LOG(8, LOG_DEBUG, func, __VA_ARGS__)
#define log_verbose_as(func, ...) VEXA_LOG(16, LOG_DEBUG, func, __VA_ARGS__)
