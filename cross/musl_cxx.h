/* SPDX-License-Identifier: MIT */
/* Taken in before everything that is compiled against musl: the headers of C++ were configured for another C library,
 * and want these things of it. Enough to compile with, not to run. */
#pragma once
#include <locale.h>

#ifdef __cplusplus
#include <bits/c++config.h>
#undef _GLIBCXX_USE_PTHREAD_COND_CLOCKWAIT
#endif

typedef locale_t __locale_t;
enum {
    _ISupper,
    _ISlower,
    _ISalpha,
    _ISdigit,
    _ISxdigit,
    _ISspace,
    _ISprint,
    _ISgraph,
    _IScntrl,
    _ISpunct,
    _ISalnum,
    _ISblank
};
