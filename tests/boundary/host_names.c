/* SPDX-License-Identifier: MIT */
#include <stdio.h>
#include <unistd.h>

#define OWN(name)                                                                                                      \
    void name(void);                                                                                                   \
    void name(void)                                                                                                    \
    {                                                                                                                  \
        fputs("the library called the host's " #name "\n", stderr);                                                    \
        _exit(1);                                                                                                      \
    }

OWN(append_cfg_match_cb)
OWN(base64_decode)
OWN(base64_encode_len)
OWN(base64rfc_encode)
OWN(cfg_natural_compare)
OWN(esc_value)
OWN(freadlong)
OWN(fwritelineat)
OWN(libvexa_log)
OWN(malloc_vprintf)
OWN(parse_stream)
