/* SPDX-License-Identifier: MIT */
/* A host program that has functions of its own under names of the library (host_names.c): the library's answers must
 * still be the library's. Each check reaches one of those names inside the library. */
#define _POSIX_C_SOURCE 200809L
#include <fcntl.h>
#include <libvexa.h>
#include <stdlib.h>
#include <string.h>

#define CHECK(answer)                                                                                                  \
    do {                                                                                                               \
        if (!(answer)) {                                                                                               \
            fprintf(stderr, "wrong answer: %s\n", #answer);                                                            \
            return EXIT_FAILURE;                                                                                       \
        }                                                                                                              \
    } while (0)

static int check_configuration(void)
{
    CHECK(fwriteline("/tmp/host.cfg", "a.10.b=x\na.9.b=1$\n") > 0);
    cfg_entry *cfg = parse("/tmp/host.cfg");
    CHECK(cfg);
    CHECK(strcmp(get_value(cfg, "", "a.%d.b", 10), "x") == 0);
    CHECK(strcmp(get_esc_value(cfg, "", "a.9.b"), "1\\$") == 0);
    cfg_it *section = get_cfg_section(cfg, ".b", NULL, "a.");
    CHECK(section && strcmp(section->key, "a.9.b") == 0);
    CHECK(get_cfg_section(cfg, "b", NULL, "a.") == NULL); /* logs */
    free_cfg_it(section);
    free_cfg(cfg);
    return EXIT_SUCCESS;
}

static int check_text_and_files(void)
{
    unsigned char bytes[8];
    base64url_decode(bytes, "dmV4YQ");
    CHECK(memcmp(bytes, "vexa", 5) == 0);
    CHECK(fwritelongat(AT_FDCWD, "/tmp/host.number", 5) == 0 && faddlong("/tmp/host.number", 2) == 0);
    FILE *number = fopen("/tmp/host.number", "r");
    CHECK(number);
    char *text = load_file_base64(number);
    CHECK(text && strcmp(text, "Nwo=") == 0);
    free(text);
    fclose(number);
    return EXIT_SUCCESS;
}

int main(void)
{
    return check_configuration() | check_text_and_files();
}
