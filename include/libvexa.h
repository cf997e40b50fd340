/* SPDX-License-Identifier: MIT */
#ifndef LIBVEXA_H
#define LIBVEXA_H

/**
 * libvexa - support library of the access point firmware.
 *
 * Conventions, unless a function says otherwise:
 *
 * Results    An int is 0 on success and -1, or a negated errno value where that is said, on failure; a predicate is
 *            0 or 1; a pointer is NULL on failure. Readers of state files never fail: they give the caller's default.
 * Ownership  "new" belongs to the caller, who releases it with the function named, else with free(). "borrowed" stays
 *            with its owner and lives as long as that does. "stolen" passes to the callee, also when it refuses it.
 *            A JSON result is a new reference (json_decref()).
 * Arguments  Pointers must not be NULL except where NULL has a meaning. @fmt and what follows it are a printf format
 *            and its arguments. Text is bytes up to a zero; letters, digits and blanks are those of ASCII.
 * Threads    The library makes no thread and takes no lock. State of the process is named where it exists; use it
 *            from one thread, or fill the caches before others start.
 * Process    No signal disposition, locale, umask, directory or environment variable is changed. Descriptors are
 *            opened close-on-exec. Nothing is thrown across this boundary and nothing calls exit(), but where a
 *            function says so.
 * Log        Failures and notable events are logged under a module tag and the name of the function concerned, as
 *            far as libvexa_log_level lets them through. Logging keeps errno.
 */

#include <netdb.h>
#include <netinet/in.h>
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <sys/socket.h>
#include <sys/types.h>
#include <sys/un.h>
#include <time.h>

#ifdef __cplusplus
extern "C" {
#endif

#define VEXA_API __attribute__((visibility("default")))
#define VEXA_PRINTF(text, first) __attribute__((format(printf, text, first)))

/* A JSON value of jansson; include <jansson.h> to look inside. */
typedef struct json_t json_t;

/** A circular, doubly linked list: the head, and in each entry its links. An empty head links to itself. */
typedef struct vexa_list {
    struct vexa_list *next;
    struct vexa_list *prev;
} vexa_list;

/* ------------------------------------------------------------------------------------------------------------------
 * Logging
 *
 * Three words of process-wide state, written by the host at start-up and read without a lock. libvexa_log() may be
 * called from any thread.
 */

/** Verbosity, not a syslog priority: errors need at least 1, warnings 2, informational lines 4, debug lines 8 and
 *  verbose debug lines 16. 0 silences the library. The start value is 4. */
VEXA_API extern uint32_t libvexa_log_level;

/** Non-zero (the start value is 1): lines go to the system log while "/var/log/messages" exists, else to "/dev/kmsg",
 *  else to standard error. 0: they go to standard error. */
VEXA_API extern int32_t libvexa_log_use_syslog;

/** Display names of the syslog priorities 0 to 7, five characters each. */
VEXA_API extern const char *const libvexa_log_level_names[8];

/**
 * libvexa_log() - write one line, whatever libvexa_log_level says; the gate is the caller's.
 * @priority: syslog priority; on the stream paths it is named by its low three bits.
 * @module: tag of the subsystem that logs.
 * @func: name of the function that logs.
 *
 * Writes:  "prog[pid]: module.func(): text" through syslog(), the text cut to 1023 characters; or
 *          "prog[pid]: [level] module.func(): text" to "/dev/kmsg" or standard error, uncut. openlog() is left to
 *          the host.
 * Errors:  none visible; errno is kept.
 */
VEXA_API void libvexa_log(int priority, const char *module, const char *func, const char *format, ...)
    VEXA_PRINTF(4, 5);

/**
 * libvexa_log_json() - write a JSON value, one log line per line of its text.
 * @json: borrowed; NULL is written as "null data".
 * @title: first line, or NULL for none.
 *
 * Writes:  the text of json_dumps() with an indentation of 4, each line with its number; a line that does not fit a
 *          system log line goes on, unnumbered, in the next.
 */
VEXA_API void libvexa_log_json(int priority, const char *module, const char *func, const json_t *json,
                               const char *title);

/**
 * libvexa_log_hex() - write bytes as a hex dump, sixteen to a line, under a heading.
 * @data: NULL gives the heading only.
 * @len: bytes; 0 or less gives the heading only.
 * @title: part of the heading; NULL is "".
 */
VEXA_API void libvexa_log_hex(int priority, const char *module, const char *func, const unsigned char *data, int len,
                              const char *title);

/* ------------------------------------------------------------------------------------------------------------------
 * Byte buffer
 *
 * A first-in, first-out byte store. One thread at a time. Log tag "buffer".
 */

/** What a buffer holds; for reading only. */
typedef struct buffer_state {
    uint8_t *data;
    size_t read_pos;         /* offset of the first unread byte */
    size_t write_pos;        /* offset where the next byte goes */
    size_t length;           /* unread bytes */
    size_t capacity;         /* bytes at @data */
    size_t initial_capacity; /* what reset() shrinks back to */
} buffer_state;

/**
 * The object and its operations, each called with the object itself: b->write(b, bytes, count).
 *
 * An operation that needs more room grows the capacity by the bytes asked for, rounded up to a multiple of 4096. When
 * memory runs out, or the buffer would pass INT_MAX bytes, it reports so and the contents stay as they were.
 */
typedef struct buffer buffer;
struct buffer {
    buffer_state *state;

    /** Start with an empty storage of @capacity bytes; an earlier one is released. Returns 0 or -1, then with the
     *  earlier one in place. */
    int (*init)(buffer *b, size_t capacity);
    /** Unread bytes. */
    uint32_t (*len)(buffer *b);
    /** Bytes of storage. */
    uint32_t (*cap)(buffer *b);
    /** Append @count bytes, which may be the buffer's own. Returns @count; 0 for a NULL source or without memory. */
    int (*write)(buffer *b, const void *src, size_t count);
    /** Append formatted text. The stored text stays zero-terminated until the next append, and the zero does not
     *  count. Returns characters appended; 0 without memory. */
    int (*printf)(buffer *b, const char *fmt, ...) VEXA_PRINTF(2, 3);
    /** Take up to @count bytes; a NULL @dst skips them. Returns bytes taken. */
    int (*read)(buffer *b, void *dst, size_t count);
    /** Borrowed pointer to the first unread byte, valid until the next append. */
    void *(*head)(buffer *b);
    /** New buffer of the same capacity with as many bytes as are unread, taken from the start of the storage (not
     *  from the first unread byte), both positions at 0; of 4096 bytes when nothing is unread. NULL without memory. */
    buffer *(*clone)(buffer *b);
    /** Drop everything, shrink to the capacity given at the start and fill that with zeros. */
    void (*reset)(buffer *b);
    /** Make everything written readable again. */
    void (*rewind)(buffer *b);
    /** Release the storage and the object. */
    void (*destroy)(buffer *b);
    /** send() the unread bytes with MSG_NOSIGNAL and take what went out. Returns bytes sent; -1 for a negative
     *  descriptor or what send() failed with, and then nothing is taken. */
    ssize_t (*send)(buffer *b, int fd, int flags);
    /** Append @count zero bytes. Returns borrowed pointer to them; NULL without memory. */
    void *(*alloc_zeroed)(buffer *b, size_t count);
};

/** buffer_create2() - new buffer for buffer_destroy(); NULL when @capacity exceeds 4194304 or memory runs out. */
VEXA_API buffer *buffer_create2(size_t capacity);

/** buffer_create() - new buffer of 4096 bytes for buffer_destroy(). */
VEXA_API buffer *buffer_create(void);

/** buffer_destroy() - release a buffer; NULL is allowed. */
VEXA_API void buffer_destroy(buffer *b);

/** buffer_pop() - remove the last @n bytes written, at most all; a negative @n removes none. */
VEXA_API void buffer_pop(buffer *b, int n);

/** buffer_fill() - append @lines pieces of sample text, each two numbers and 100 bytes. */
VEXA_API void buffer_fill(buffer *b, int lines);

/* ------------------------------------------------------------------------------------------------------------------
 * Text and encoding
 *
 * Reentrant, except the random generators: they reseed and use the process-wide generator of the C library.
 */

/** base64_encode_len() - bytes that the text of @len bytes takes, padding and final zero included. */
VEXA_API unsigned base64_encode_len(unsigned len);

/** base64_decode_len() - bytes that base64_decode() may write for @text, final zero included. An upper bound: only
 *  the leading characters of either alphabet count. */
VEXA_API unsigned base64_decode_len(const char *text);

/**
 * base64rfc_encode() - base64 text with "+" and "/", padded with "=" and zero-terminated.
 * @out: base64_encode_len(@len) bytes.
 */
VEXA_API void base64rfc_encode(char *out, const unsigned char *in, unsigned len);

/** base64url_encode() - like base64rfc_encode() with "-" and "_" and without padding. */
VEXA_API void base64url_encode(char *out, const unsigned char *in, unsigned len);

/**
 * base64_decode() - the bytes of a base64 text in either alphabet, or in both mixed, and a zero after them.
 * @out: base64_decode_len(@text) bytes.
 *
 * The first other character ends the text. The number of bytes is not told: take it from the length of the text.
 */
VEXA_API void base64_decode(unsigned char *out, const char *text);

/** base64url_encode_len() - the same as base64_encode_len(). */
VEXA_API unsigned base64url_encode_len(unsigned len);

/** base64url_decode_len() - the same as base64_decode_len(). */
VEXA_API unsigned base64url_decode_len(const char *text);

/** base64url_decode() - the same as base64_decode(). */
VEXA_API void base64url_decode(unsigned char *out, const char *text);

/**
 * hex2uchar() - bytes from pairs of hexadecimal digits.
 * @out: @size bytes; those without digits are zero.
 *
 * Stops at the first pair that is none; a single last digit makes a byte alone.
 * Returns: @size, whatever was found; 0 when an argument is NULL or @hex is empty (nothing is written).
 */
VEXA_API int hex2uchar(const char *hex, unsigned char *out, size_t size);

/**
 * uchar2hex() - upper-case hexadecimal digits of @len bytes, zero-terminated.
 * @out: @outsize bytes, more than twice @len; the rest is filled with zeros.
 *
 * Returns: @len; 0 when a pointer is NULL or @outsize is too small (nothing is written).
 */
VEXA_API int uchar2hex(const unsigned char *in, size_t len, char *out, size_t outsize);

/** uchar2lowerhex() - like uchar2hex() with lower-case digits. */
VEXA_API int uchar2lowerhex(const unsigned char *in, size_t len, char *out, size_t outsize);

/**
 * bin2hex() - lower-case hexadecimal digits of all bytes but the last, zero-terminated.
 * @len: at least 1; 0 writes nothing. The last byte is never written: callers count a terminator.
 * @outsize: pairs are written while three bytes of room remain.
 *
 * Returns: characters written, without the zero.
 */
VEXA_API int bin2hex(const unsigned char *in, unsigned len, char *out, unsigned outsize);

/**
 * strtomac() - the six bytes of a MAC address "xx:xx:xx:xx:xx:xx".
 *
 * Returns: 0; -1 unless all six fields are there.
 */
VEXA_API int strtomac(const char *text, unsigned char mac[6]);

/** trim_trailing() - overwrite white space at the end of the @len characters at @s with zeros. */
VEXA_API void trim_trailing(char *s, int len);

/**
 * strncpy_trim() - copy @src without its leading white space; trailing white space stays.
 * @size: bytes at @dst, the final zero included; 0 writes nothing.
 * @src: NULL gives an empty text.
 */
VEXA_API void strncpy_trim(char *dst, size_t size, const char *src);

/** malloc_vprintf() - new formatted text; NULL when memory runs out. */
VEXA_API char *malloc_vprintf(const char *fmt, va_list args) VEXA_PRINTF(1, 0);

/** malloc_printf() - new formatted text; NULL when memory runs out. */
VEXA_API char *malloc_printf(const char *fmt, ...) VEXA_PRINTF(1, 2);

/**
 * vexa_snprintf() - snprintf() that tells what was stored and logs a cut.
 * @module: tag for the log line.
 * @trunc_msg: logged as an error when the text does not fit; NULL asks for the plain snprintf() result.
 * @size: bytes at @buf; 0 stores nothing and logs @trunc_msg.
 *
 * Returns: characters stored, without the zero; with a NULL @trunc_msg the length of the whole text; 0 when the
 *          text cannot be formatted (logged).
 */
VEXA_API int vexa_snprintf(const char *module, const char *trunc_msg, char *buf, size_t size, const char *fmt, ...)
    VEXA_PRINTF(5, 6);

/** url_encode() - new text, form-encoded: a blank as "+", other reserved bytes as "%" and two lower-case digits.
 *  NULL when memory runs out. */
VEXA_API char *url_encode(const char *text);

/**
 * comment_out_lines() - overwrite the first character of each line that holds a pattern with "#", in place.
 * @stream: open for reading and writing, and seekable.
 * @patterns: texts separated by "|"; an empty one matches nothing. The string is cut up.
 *
 * Returns: 0; -1 when a line of more than 255 characters was passed over, or the stream cannot be rewound, read or
 *          written.
 */
VEXA_API int comment_out_lines(FILE *stream, char *patterns);

/** gen_rand_bytes() - fill @buf with @len bytes of rand(), seeded from "/dev/urandom". Returns @len; 0 for NULL or
 *  0. Not for keys. */
VEXA_API int gen_rand_bytes(unsigned char *buf, size_t len);

/**
 * gen_rand_hex() - random upper-case hexadecimal digits, zero-terminated.
 * @size: bytes at @buf; odd, since whole pairs and a zero fill it.
 *
 * Returns: the number of random bytes, @size / 2; 0 for an even @size (nothing is written).
 */
VEXA_API int gen_rand_hex(char *buf, size_t size);

/** gen_rand_string() - @len random letters and digits and a zero, @len + 1 bytes in all. Returns @buf; NULL for NULL
 *  or 0. */
VEXA_API char *gen_rand_string(char *buf, size_t len);

/* ------------------------------------------------------------------------------------------------------------------
 * Files and values
 *
 * State files hold one line, one number, or lines "key value". Readers open without blocking, so that a FIFO in the
 * place of a file reads as empty. The functions ending in "at" take a directory descriptor (or AT_FDCWD) that a
 * relative path starts from. A buffer size of 0 is never written to. Log tag "libvexa_util".
 */

/**
 * fsreadline() - the first line of a file, without its line feed or carriage return.
 *
 * Returns: 0; -EINVAL when @path is NULL; a negated errno when the file cannot be opened or read. An empty file gives
 *          the negated errno as it stood, which may be 0; so check @buf, which is then an empty text.
 */
VEXA_API int fsreadline(const char *path, char *buf, size_t size);

/**
 * freadline() - the first line of a file, or a default.
 * @def: taken on any failure, an empty file included; NULL is logged as an error and taken as "".
 *
 * Returns: @buf.
 */
VEXA_API char *freadline(const char *path, char *buf, size_t size, const char *def);

/** freadlineat() - freadline() relative to @dirfd. */
VEXA_API char *freadlineat(int dirfd, const char *path, char *buf, size_t size, const char *def);

/**
 * fsreadlinebykey() - the first line that contains a text, its line feed included.
 *
 * A line longer than 254 characters counts as several lines.
 * Returns: 0; -1 when nothing was found, on a NULL argument, or when the file cannot be opened.
 */
VEXA_API int fsreadlinebykey(const char *path, const char *needle, char *buf, size_t size);

/**
 * freadvalue() - the value of a line "key value" or "key=value".
 * @key: compared with the whole first word of the line.
 * @def: taken when no line of that key has a value; NULL is logged as an error and taken as "".
 *
 * Returns: @buf.
 */
VEXA_API char *freadvalue(const char *path, const char *key, char *buf, size_t size, const char *def);

/** freadlong() - the decimal number at the start of a file, or @def. At most 15 characters are looked at. */
VEXA_API long freadlong(const char *path, long def);

/** freadulong() - freadlong() for an unsigned number. */
VEXA_API unsigned long freadulong(const char *path, unsigned long def);

/** freaddouble() - the number at the start of a file, or @def. At most 32 characters are looked at. */
VEXA_API double freaddouble(const char *path, double def);

/** freadlongat() - the number at the start of a file, decimal, "0x" or octal; or @def. At most 15 characters are
 *  looked at. */
VEXA_API long freadlongat(int dirfd, const char *path, long def);

/** freadi64at() - freadlongat() for 64 bits. */
VEXA_API int64_t freadi64at(int dirfd, const char *path, int64_t def);

/**
 * load_file_base64() - a whole stream as base64 text, standard alphabet.
 * @stream: seekable; read from its beginning.
 *
 * Returns: new text, "" for an empty file; NULL on failure (logged).
 */
VEXA_API char *load_file_base64(FILE *stream);

/** fopen_format() - fopen() of a formatted path: a new stream for fclose(); NULL on failure. */
VEXA_API FILE *fopen_format(const char *mode, const char *path_fmt, ...) VEXA_PRINTF(2, 3);

/**
 * fwriteline() - replace the contents of a file by a formatted text.
 *
 * Returns: characters written; -1 when the file cannot be opened or the text did not reach it.
 */
VEXA_API int fwriteline(const char *path, const char *fmt, ...) VEXA_PRINTF(2, 3);

/** fwritelineat() - fwriteline() relative to @dirfd; a new file gets mode 0600. */
VEXA_API int fwritelineat(int dirfd, const char *path, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** fwritelongat() - replace the contents of a file by a number and a line feed. Returns 0 or -1. */
VEXA_API int fwritelongat(int dirfd, const char *path, long value);

/** faddlong() - add to the decimal number in a file, 0 when it holds none. Read and write are separate: not atomic.
 *  Returns 0, or -1 when nothing was written. */
VEXA_API int faddlong(const char *path, long delta);

/** faddlongat() - add to the number (decimal, "0x" or octal) in a file, created with mode 0600 when missing. Returns
 *  0 or -1. */
VEXA_API int faddlongat(int dirfd, const char *path, long delta);

/** faddi64at() - faddlongat() for 64 bits. */
VEXA_API int faddi64at(int dirfd, const char *path, int64_t delta);

/**
 * qx_reduce_path() - a path without ".", ".." and surplus slashes, as text: no link is followed.
 * @out: 4096 bytes; NULL asks for a new text.
 *
 * A ".." that goes beyond the start of a relative path is resolved against the current directory.
 * Returns: @out or the new text; NULL with errno ENAMETOOLONG beyond 4095 characters, ENOMEM, or that of getcwd()
 *          (the last two logged).
 */
VEXA_API char *qx_reduce_path(const char *path, char *out);

/**
 * qx_mkdir_p() - make a directory and those above it that are missing.
 * @mode: of each directory made, less the umask.
 *
 * Returns: 0 with errno 0, also when it is there already; -1 with errno set (ENOTDIR when a file is in the way).
 */
VEXA_API int qx_mkdir_p(const char *path, mode_t mode);

/* ------------------------------------------------------------------------------------------------------------------
 * JSON helpers
 *
 * Accessors of JSON objects; they take a NULL object as an empty one. Log tag "libvexa_util".
 */

/** The library's timestamp, the time base of vexa_json_maybe_append_array(). Written by vexa_grab_ts() and
 *  vexa_set_ts(); 0 at the start. */
VEXA_API extern struct timespec qx_now;

/** vexa_grab_ts() - read the monotonic clock into qx_now. Returns its seconds. */
VEXA_API time_t vexa_grab_ts(void);

/** vexa_set_ts() - set the seconds of qx_now, leaving its nanoseconds. */
VEXA_API void vexa_set_ts(time_t seconds);

/** vexa_json_get_str() - borrowed text of the string under @key, or @def. */
VEXA_API const char *vexa_json_get_str(json_t *obj, const char *key, const char *def);

/** vexa_json_get_bool() - 1 for true or an integer other than 0, 0 for false or the integer 0; else @def. */
VEXA_API int vexa_json_get_bool(json_t *obj, const char *key, int def);

/** vexa_json_read_i64() - the integer under @key, or @def. */
VEXA_API int64_t vexa_json_read_i64(json_t *obj, const char *key, int64_t def);

/** vexa_json_read_long() - the same as vexa_json_read_i64(). */
VEXA_API long vexa_json_read_long(json_t *obj, const char *key, long def);

/** vexa_json_add_i64() - add to the integer under @key, 0 when there is none; wraps around. Returns 0 or -1. */
VEXA_API int vexa_json_add_i64(json_t *obj, const char *key, int64_t delta);

/** vexa_json_add_long() - the same as vexa_json_add_i64(). */
VEXA_API int vexa_json_add_long(json_t *obj, const char *key, long delta);

/**
 * vexa_json_read_array() - the integers of the array under @key, in order; other elements are passed over.
 * @out: set to a new array of *@count numbers.
 *
 * Returns: 0; -1, with both untouched, when there is no array, no integer in it, or no memory.
 */
VEXA_API int vexa_json_read_array(json_t *obj, const char *key, int64_t **out, size_t *count);

/** vexa_json_append_array() - append to the array under @key, made when missing. Returns 0; -1 when @key holds
 *  something else or memory runs out. */
VEXA_API int vexa_json_append_array(json_t *obj, const char *key, int64_t value);

/**
 * vexa_json_maybe_append_array() - append a sample to a time series that thins itself.
 * @name: of the series, less than 32 characters: "<name>Array" holds the samples, "<name>Time" the seconds of the
 *        last one and "<name>Interval" the least seconds between two (10 when missing).
 *
 * A series of 360 samples first loses every second one, in place, and its interval doubles. The time is that of
 * qx_now.
 * Returns: 0 when appended; -2 when the last sample is younger than the interval; -1 on error: the name is too long
 *          (logged), the key holds something other than an array, or memory runs out.
 */
VEXA_API int vexa_json_maybe_append_array(json_t *obj, const char *name, int64_t value);

/**
 * vexa_json_integer_value_from_obj() - an integer that may be written as text.
 * @obj_name: for the debug lines that say why there is none.
 * @accept_integer: 0 takes only a string.
 * @value: untouched whenever the result is 0.
 *
 * Returns: 1 for a string that begins with a number (decimal, "0x" or octal); 2 for an integer, of which the low 32
 *          bits are taken; else 0.
 */
VEXA_API int vexa_json_integer_value_from_obj(json_t *obj, const char *obj_name, const char *key, int accept_integer,
                                              int *value);

/** mac_str_to_oui_json_string() - new JSON string of the first three octets of a MAC address, as six lower-case
 *  hexadecimal digits; NULL when there are fewer. */
VEXA_API json_t *mac_str_to_oui_json_string(const char *mac);

/** json_object_load_file_base64() - set @key to load_file_base64() of a stream. Returns 0; -1, with "" under @key,
 *  when that failed. */
VEXA_API int json_object_load_file_base64(json_t *obj, const char *key, FILE *stream);

/* ------------------------------------------------------------------------------------------------------------------
 * Command execution
 *
 * Calls return when the command has ended. No descriptor of the library reaches a command. Log tag
 * "libvexa_exec".
 */

/** A command line, ready for execv(d->path, d->argv). */
typedef struct exec_desc {
    char path[4096];
    int32_t argc; /* entries of @argv before its NULL */
    char **argv;  /* the first points at @path, the others are owned */
} exec_desc;

/**
 * exec_create() - new command line for exec_destroy(): a path, then its arguments, then NULL.
 * @path: cut to 4095 characters, each argument to 4096.
 *
 * Returns: NULL when @path is NULL or empty, or memory runs out.
 */
VEXA_API exec_desc *exec_create(const char *path, ...) __attribute__((sentinel));

/** exec_destroy() - release a command line; NULL is allowed. */
VEXA_API void exec_destroy(exec_desc *d);

/** exec_copy() - new deep copy for exec_destroy(); NULL for NULL or when memory runs out. */
VEXA_API exec_desc *exec_copy(const exec_desc *d);

/**
 * exec_cmp() - whether two command lines are the same.
 *
 * Returns: 0 when they are; the index (from 1) of the first argument that differs; -1 when one is NULL, -ENOENT when
 *          their numbers of arguments differ, -ESRCH when their paths do. Not an order.
 */
VEXA_API int exec_cmp(const exec_desc *a, const exec_desc *b);

/**
 * syswrapper_impl() - run an action of the device's script "/etc/syswrapper.sh", else "/usr/etc/syswrapper.sh".
 * @wait: non-zero returns when the action has ended; 0 lets it run on, reaped by nobody of ours.
 * @action: first argument of the script; up to 48 further ones follow, then NULL. Surplus ones are left off.
 *
 * The child gets the default SIGPIPE and an empty signal mask. Other children of the process that end meanwhile are
 * reaped, too. Failures are logged as debug lines only.
 */
VEXA_API void syswrapper_impl(int wait, const char *action, ...) __attribute__((sentinel));

/** forkexec() - run the program @argv[0] and wait for its end, with signals and children as syswrapper_impl(). */
VEXA_API void forkexec(char *const argv[]);

/**
 * popen_get_output() - the beginning of what a shell command writes to its standard output.
 * @size: bytes at @buf; the output, cut when longer, is zero-terminated inside. 0 stores nothing.
 *
 * Returns: bytes before the zero, once the command has ended; -1 when it cannot be started (logged). A status other
 *          than 0 is only logged.
 */
VEXA_API int popen_get_output(const char *command, char *buf, size_t size);

/**
 * popen_alloc_output() - like popen_get_output(), as new memory of at most @max bytes, the final zero included.
 *
 * Returns: NULL when the command cannot be started, memory runs out or @max is 0 (logged).
 */
VEXA_API char *popen_alloc_output(const char *command, size_t max);

/* ------------------------------------------------------------------------------------------------------------------
 * Lock files
 *
 * Two locks between processes, gone when their holder ends. Who holds them is state of the process. A link in the
 * place of a lock is not followed. Log tag "statistics".
 */

/** report_lock() - take the lock on the directory "/var/run/report", trying for eleven seconds. Returns 0; -1 when
 *  it stays busy, is held by this process already, or cannot be opened (logged). */
VEXA_API int report_lock(void);

/** report_unlock() - release it. Returns 0; -1 when it was not held (logged). */
VEXA_API int report_unlock(void);

/** report_locked() - 1 while this process holds it. */
VEXA_API int report_locked(void);

/** inform_profile_lock() - report_lock() for the file "/var/run/inform-profile.lock", made with mode 0640 when
 *  missing. */
VEXA_API int inform_profile_lock(void);

/** inform_profile_unlock() - release it. Returns 0; -1 when it was not held (logged). */
VEXA_API int inform_profile_unlock(void);

/* ------------------------------------------------------------------------------------------------------------------
 * Interfaces and system helpers
 *
 * Interface names count up to 15 characters. Failures are logged under the tag "libvexa_util".
 */

/** set_iface_ip() - set the IPv4 address of an interface. A text that is no address sets 0.0.0.0. Returns 0 or -1. */
VEXA_API int set_iface_ip(const char *ifname, const char *ipv4_text);

/** get_iface_ip() - the IPv4 address of an interface, in network byte order. Returns 0 or -1. */
VEXA_API int get_iface_ip(const char *ifname, uint32_t *addr);

/** get_iface_index() - the index of an interface. Returns 0 or -1. */
VEXA_API int get_iface_index(const char *ifname, uint32_t *index);

/** iface_is_up() - 1 when the interface is administratively up; 0 also on any failure (logged). */
VEXA_API int iface_is_up(const char *ifname);

/** is_ppp_dev() - 1 when the name begins with "ppp". */
VEXA_API int is_ppp_dev(const char *ifname);

/** ipv4_netmask_from_prefix_len() - the mask in host byte order. All ones for a prefix of 0 as for 32; 0 above 32
 *  (logged). */
VEXA_API uint32_t ipv4_netmask_from_prefix_len(unsigned prefix);

/** ipv4_prefix_len_from_netmask() - number of bits set, wherever they stand. */
VEXA_API int ipv4_prefix_len_from_netmask(uint32_t mask);

/** ipv6_netmask_from_prefix_len() - fill in a mask; a prefix above 128 counts as 128. */
VEXA_API void ipv6_netmask_from_prefix_len(uint8_t mask[16], unsigned prefix);

/** net_equals_v6() - 1 when two addresses agree in their first @prefix bits (all of them above 128); 0 for NULL
 *  (logged). */
VEXA_API int net_equals_v6(const uint8_t a[16], const uint8_t b[16], unsigned prefix);

/**
 * get_build_time() - "date time" of the firmware build, each part cut to 11 characters.
 * @size: bytes at @buf; the text is cut to fit.
 *
 * Reads:   "build_date" and "build_time" of "/usr/lib/build.properties".
 * Returns: 0; -1, with @buf untouched, without that file or for a negative @size.
 */
VEXA_API int get_build_time(char *buf, int size);

/** get_vexa_scm_reftype() - "scm_reftype" of "/usr/lib/build.properties": 1 for "atag", 2 for "branch", else 0. */
VEXA_API int get_vexa_scm_reftype(void);

/** get_wireless_uplink_state() - "/var/run/system.uplink" as a number: 1 "init", 2 "wds", 3 "eth", 4 "down", else
 *  0. */
VEXA_API int get_wireless_uplink_state(void);

/**
 * get_uplink_device() - name of the interface that leads to the network.
 * @size: bytes at @buf; the name is cut to fit.
 *
 * Reads:   "/var/run/system.uplink"; then "/var/run/system.uplink_ifname", else "/var/run/system.uplink_port".
 *          Without the first file, the first of "eth0", "bond0" and "eth1" that is up; when none is, @buf stays
 *          untouched.
 * Returns: 0; 1, 2 or 3, with @buf untouched, for the states "init", "down" and "unknown".
 */
VEXA_API int get_uplink_device(char *buf, size_t size);

/** vexa_force_cpu() - bind a process (0: the caller) to one CPU. Returns 0; -1 with errno, as for a CPU outside 0
 *  to 1023. */
VEXA_API int vexa_force_cpu(pid_t pid, int cpu);

/** vexa_show_cpu_mask() - log the CPUs that a process may run on, as a debug line. */
VEXA_API void vexa_show_cpu_mask(pid_t pid);

/* ------------------------------------------------------------------------------------------------------------------
 * URLs
 *
 * Reentrant; one thread at a time for each record. Log tag "libvexa".
 */

#ifndef AI_PASSIVE
/* <netdb.h> keeps it from a program in plain C11. */
struct addrinfo {
    int ai_flags;
    int ai_family;
    int ai_socktype;
    int ai_protocol;
    socklen_t ai_addrlen;
    struct sockaddr *ai_addr;
    char *ai_canonname;
    struct addrinfo *ai_next;
};
#endif

/** Room for the socket address of either family. */
typedef union url_sockaddr {
    struct sockaddr any;
    struct sockaddr_in v4;
    struct sockaddr_in6 v6;
} url_sockaddr;

/** The parts of a URL, each owned by the record; for url_destroy(). */
typedef struct url {
    char *normalized;      /* scheme, user information, host, port if not the scheme's own, path */
    char *original;        /* what was given to url_parse() */
    char *scheme;          /* lower case; "http" when the text has none */
    char *userinfo;        /* before the "@"; NULL when there is none */
    char *host;            /* without brackets */
    uint16_t port;         /* host byte order; the scheme's own unless the text has another */
    char *path;            /* from the first "/", "?" or ";" to the end; "/" when there is none */
    int is_https;          /* 1 for "https" */
    int is_ipv6;           /* 1 when the host is in brackets, or a number of no other kind */
    struct addrinfo addr;  /* of url_resolve(): ai_addr points to @sockaddr, ai_next and ai_canonname are NULL */
    url_sockaddr sockaddr; /* the address itself */
} url;

/**
 * url_scheme2port() - the port of "http", "https", "stun", "ws" or "wss", without case.
 * @port: written on success; NULL only asks whether the scheme is known.
 *
 * Returns: 0; -1 for any other scheme and for NULL.
 */
VEXA_API int url_scheme2port(const char *scheme, uint16_t *port);

/**
 * url_parse() - the parts of a text "[scheme://][user@]host[:port][path]".
 * @text: 1 to 1024 bytes; blanks and control characters (bytes up to 0x20, 0x7f) are refused wherever they stand.
 *
 * A host with a "[" is an address up to the "]", a zone included; after it only ":" and a port may follow. Without
 * brackets, a host with a letter beyond "f" is a name; one of other characters with a "." before any ":" is an IPv4
 * address; both may have a port behind a ":". Every other host is taken whole as an IPv6 address. A port that is not 1
 * to 5 digits from 1 to 65534 is passed over.
 * Returns: a new record, not resolved, for url_destroy(); NULL when the scheme is none of url_scheme2port(), the host
 * is empty or its brackets do not match, the text is refused, or memory runs out (this goes to the system log).
 */
VEXA_API url *url_parse(const char *text);

/** url_destroy() - release a record; NULL is allowed. */
VEXA_API void url_destroy(url *u);

/** url_copy() - new record for url_destroy(), resolved if @u is; NULL when @u is or memory runs out. */
VEXA_API url *url_copy(const url *u);

/**
 * url_replace() - release *@target, which may be NULL, and put a copy of @source in its place.
 * @source: may be *@target itself; NULL leaves NULL in *@target.
 *
 * Returns: the new *@target; NULL when memory runs out, and then *@target is as it was.
 */
VEXA_API url *url_replace(url **target, const url *source);

/**
 * url_resolve() - look up the host and keep the last IPv4 or IPv6 address found in @u; an earlier one is cleared.
 * @hints: as for getaddrinfo(); NULL asks for IPv4 and stream sockets.
 *
 * Returns: 0; -1 for a NULL @u; what getaddrinfo() failed with (logged); -ENXIO when no such address came; -ENOENT when
 *          the last one has more than 28 bytes (logged).
 */
VEXA_API int url_resolve(url *u, const struct addrinfo *hints);

/** url_addr_ntop() - a socket address as "192.0.2.1:80" or "[2001:db8::1]:80", cut to @size; "" when it is neither.
 *  Returns @buf. */
VEXA_API char *url_addr_ntop(const struct sockaddr *addr, char *buf, size_t size);

/** dump_addrinfo() - log a list of addresses, a debug line for each. */
VEXA_API void dump_addrinfo(const struct addrinfo *list);

/* ------------------------------------------------------------------------------------------------------------------
 * Configuration
 *
 * A flat file of lines "key=value", kept as a list in file order; NULL is the empty configuration. One thread at a
 * time: esc_value() fills caches inside the entries. Log tag "cfg".
 */

/** One line. A host may replace @value by another malloc'd text: it frees the old one and sets @esc_value to NULL,
 *  freed before when it is not the old value itself. */
typedef struct cfg_entry {
    char *key;              /* text before the first "=", blanks and tabs trimmed; owned */
    char *value;            /* text after it, as it stands in the file; owned */
    char *esc_value;        /* cache of esc_value(): owned, or the same pointer as value, or NULL */
    struct cfg_entry *next; /* file order */
} cfg_entry;

/** A node of a query result: borrows key and value from the configuration and lives no longer than that. */
typedef struct cfg_it {
    char *key;
    char *value;
    char *esc_value; /* always NULL */
    struct cfg_it *next;
} cfg_it;

/** What append_cfg_match_cb() collects into; both NULL at the start. */
typedef struct cfg_it_ctx {
    cfg_it *head;
    cfg_it *tail;
} cfg_it_ctx;

/** What the counting queries count into. */
typedef struct cfg_count_ctx {
    uint32_t count;
    uint32_t enabled_only; /* non-zero: count only entries whose value is a true word */
} cfg_count_ctx;

/**
 * cfg_natural_compare() - the order of keys: without case, runs of digits by their number (of any length).
 *
 * Each position weighs its character, or 256 plus the number that starts there; then one character further on both
 * sides. So "radio.10" follows "radio.9", and "a01" differs from "a1".
 * Returns: -1, 0 or 1; NULL comes before any text.
 */
VEXA_API int cfg_natural_compare(const char *a, const char *b);

/**
 * parse_stream() - the configuration in a stream, from where the stream stands.
 * @stream: NULL gives the empty configuration.
 *
 * Reads:   lines "key=value" of any length. Lines that begin with "#" and lines without "=" are passed over; after a
 *          line that begins with "# misc" an entry replaces the value of the first earlier one with an equal key.
 *          The last character of each line is dropped as its line feed, also when it is none; a zero byte ends the
 *          key or value at that byte.
 * Returns: a new configuration for free_cfg(). When memory runs out, the entries so far (logged).
 */
VEXA_API cfg_entry *parse_stream(FILE *stream);

/** parse() - parse_stream() of a file; NULL when it cannot be opened, as for an empty one. */
VEXA_API cfg_entry *parse(const char *path);

/** free_cfg() - release a configuration; NULL is allowed. */
VEXA_API void free_cfg(cfg_entry *cfg);

/** print_cfg() - write each entry to standard output as "key=value". */
VEXA_API void print_cfg(cfg_entry *cfg);

/**
 * save_cfg() - write a configuration that parses back to the same entries; its first line is "# CFG Start".
 *
 * Returns: 0; -1 when the file cannot be opened or the text did not reach it.
 */
VEXA_API int save_cfg(cfg_entry *cfg, const char *path);

/** free_cfg_it() - release the nodes of a query result, before or after its configuration; NULL is allowed. */
VEXA_API void free_cfg_it(cfg_it *it);

/** cfg_it_append() - link *@other to the end of @list and clear it. Returns the head; either may be empty. */
VEXA_API cfg_it *cfg_it_append(cfg_it *list, cfg_it **other);

/** append_cfg_match_cb() - append a node for @match. Returns 0; -1 when memory runs out or @ctx has a head without a
 *  tail (both logged). */
VEXA_API int append_cfg_match_cb(cfg_entry *match, cfg_it_ctx *ctx);

/**
 * get_value() - the value of the first entry whose key equals the formatted one by cfg_natural_compare().
 * @def: result when there is none.
 *
 * Returns: a borrowed value, or @def.
 */
VEXA_API const char *get_value(cfg_entry *cfg, const char *def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_esc_value() - get_value() through esc_value(); @def also when memory runs out. */
VEXA_API const char *get_esc_value(cfg_entry *cfg, const char *def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/**
 * esc_value() - the value with a backslash before each of ` \ " $, to stand inside double quotes in a shell.
 *
 * Returns: borrowed from @entry, which keeps it; NULL when memory runs out (logged).
 */
VEXA_API const char *esc_value(cfg_entry *entry);

/**
 * get_int32() - get_value() as a number: decimal, "0x" or octal; text after the digits is ignored.
 *
 * Returns: the low 32 bits of the number; @def when there is no entry, no digit, or errno is ERANGE after the
 *          conversion. errno is not cleared before: an ERANGE left from an earlier call gives @def, too.
 */
VEXA_API int32_t get_int32(cfg_entry *cfg, int32_t def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_uint32() - get_int32() for an unsigned number. */
VEXA_API uint32_t get_uint32(cfg_entry *cfg, uint32_t def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_int32_dec() - get_int32() in base 10 only. */
VEXA_API int32_t get_int32_dec(cfg_entry *cfg, int32_t def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_int64() - get_int32() for 64 bits. */
VEXA_API int64_t get_int64(cfg_entry *cfg, int64_t def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_bool() - 1 for "on", "enabled", "1", "enable", "active", "true"; 0 for "off", "disabled", "0", "disable",
 *  "inactive", "false"; without case and surrounding blanks. Else @def. */
VEXA_API int get_bool(cfg_entry *cfg, int def, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_cfg_count() - number of entries. */
VEXA_API uint32_t get_cfg_count(cfg_entry *cfg);

/**
 * get_cfg_it() - the entries whose keys match, in file order.
 * @exact: non-zero compares the whole key like get_value(); 0 takes every key that begins with the text, case and
 *         all.
 *
 * Returns: a new list for free_cfg_it(); NULL when nothing matches. What was collected when memory ran out.
 */
VEXA_API cfg_it *get_cfg_it(cfg_entry *cfg, int exact, const char *fmt, ...) VEXA_PRINTF(3, 4);

/** get_cfg_key_count() - number of entries that get_cfg_it() would give. */
VEXA_API uint32_t get_cfg_key_count(cfg_entry *cfg, int exact, const char *fmt, ...) VEXA_PRINTF(3, 4);

/**
 * get_cfg_section() - the entries of an indexed section: keys made of prefix, number and postfix.
 * @postfix: from its "." on, compared like a key; NULL takes the keys that end with the number. One that does not
 *           begin with "." matches nothing (logged).
 * @value: NULL, or the value that an entry must have, case and all.
 * @fmt: the prefix; it should end with "." (else a warning is logged).
 *
 * Returns: a new list for free_cfg_it(), sorted by cfg_natural_compare() of the keys, equal ones in file order; NULL
 *          when nothing matches.
 */
VEXA_API cfg_it *get_cfg_section(cfg_entry *cfg, const char *postfix, const char *value, const char *fmt, ...)
    VEXA_PRINTF(4, 5);

/** get_cfg_section_count() - number of entries that get_cfg_section() would give. */
VEXA_API uint32_t get_cfg_section_count(cfg_entry *cfg, const char *postfix, const char *value, const char *fmt, ...)
    VEXA_PRINTF(4, 5);

/** get_cfg_section_enabled_count() - number of entries of the section whose value is a true word of get_bool(),
 *  blanks around it not allowed. */
VEXA_API uint32_t get_cfg_section_enabled_count(cfg_entry *cfg, const char *postfix, const char *fmt, ...)
    VEXA_PRINTF(3, 4);

/**
 * get_cfg_diff_it() - what changed between two configurations.
 *
 * First the entries of @new_cfg that @old_cfg lacks or has with another value (its first entry of that key counts),
 * then the entries of @old_cfg whose keys @new_cfg lacks. Keys whose last component is "comment" do not count.
 * Returns: a new list for free_cfg_it() that borrows from both; NULL when there is no change. An entry that memory
 *          runs out for is left out (logged).
 */
VEXA_API cfg_it *get_cfg_diff_it(cfg_entry *old_cfg, cfg_entry *new_cfg);

/** get_cfg_key_idx() - the @n-th (from 1) number after a "." in @key, 0 and what is no number not counted; -1 when
 *  there are fewer. */
VEXA_API int get_cfg_key_idx(const char *key, int n);

/** get_key_element() - borrowed pointer into @key behind its @n-th "."; @key itself for 0, NULL when there are
 *  fewer. */
VEXA_API const char *get_key_element(const char *key, unsigned n);

/* ------------------------------------------------------------------------------------------------------------------
 * Board
 *
 * What the hardware is. Two pieces of process-wide state, never freed: the record that board_identify() answers with
 * and the heap copy that get_board() fills. Identify once before threads start. Firmware versions are packed as
 * 0x00MMmmpp. Nothing here logs.
 */

/** The maker's prefix of hardware addresses, 02:56:58; prefixes are numbers 0x00AABBCC for AA:BB:CC. */
#define VEXA_OUI 0x00025658u

/** The vendor id of the family's boards. */
#define VEXA_VENDOR_ID 0x0777u

/** min_fw_version of a board that runs beta firmware, 9.9.9. */
#define VEXA_BETA_FIRMWARE 0x00090909u

/** The version that ends a firmware table. */
#define VEXA_LAST_FIRMWARE 0x00ffffffu

/** board_port.flags: the port feeds another device. */
#define VEXA_PORT_POE_OUT 0x40u

/** One Ethernet port. */
typedef struct board_port {
    uint8_t phy_idx;
    uint8_t port_id; /* from 1: as "local_port_idx" of vexa_get_lldp_json() */
    uint8_t poe_in;  /* 1: the port that the device may be powered by */
    uint8_t flags;   /* VEXA_PORT_POE_OUT */
    uint8_t reserved[4];
    const char *label; /* "Main", "PoE In + Data", "PoE Out + Data" or "Data" */
} board_port;

/** Ethernet ports that belong together: those of one switch, or one alone. */
typedef struct board_port_group {
    uint8_t port_count;
    board_port ports[56];
} board_port_group;

/** One radio. */
typedef struct board_radio {
    const char *chip;   /* "MT7915" */
    const char *ifname; /* "ra0", the second "rai0" */
    uint32_t chip_family;
    uint16_t bus_vendor_id;
    uint16_t bus_device_id;
    uint16_t subsystem_id; /* the board's system id */
    uint16_t subsystem_vendor_id;
    uint8_t tx_chains;
    uint8_t rx_chains;
    uint8_t bands; /* 1: 2.4 GHz, 2: 5 GHz, 4: 6 GHz */
    uint8_t flags; /* 1: 802.11n, 2: 802.11ac, 4: 802.11ax */
} board_radio;

/** One model; the heap copy also tells what is particular to this device. */
typedef struct board {
    char name[64];     /* for display */
    char platform[24]; /* key of corvo_identify_platform() */
    uint32_t board_class;
    uint32_t processor;    /* id register, or number of the chip */
    uint8_t cpu_mac[6];    /* of this device */
    uint16_t constants[2]; /* of the model */
    uint8_t eth_group_count;
    board_port_group eth_groups[9];
    uint8_t radio_count;
    board_radio radios[4];
    uint16_t system_id; /* 0: the fallback record */
    uint32_t feature_mask;
    uint16_t poe_budget;     /* watts for ports that feed others */
    uint16_t poe_reserved;   /* watts of it that the device keeps */
    uint32_t min_fw_version; /* or VEXA_BETA_FIRMWARE */
    int32_t hw_rev;          /* of this device */
    const char *mcu_image;   /* firmware image of the microcontroller, "" for none */
} board;

/** Name and code of a system id, also of models without a board record. */
struct device {
    char name[32];
    char code[18];
    uint16_t system_id;
};

/** Board revisions (first to last) that need at least a firmware. */
typedef struct fw_boardrev {
    uint32_t fw_version;
    int32_t first;
    int32_t last;
} fw_boardrev;

/** Key of a part (flash vendor, BOM revision, flash JEDEC id) that needs at least a firmware. */
typedef struct fw_part {
    uint32_t fw_version;
    uint32_t key;
} fw_part;

/** Hardware address prefixes that go with a firmware and those after it. */
typedef struct fw_oui {
    uint32_t fw_version;
    const uint32_t *ouis; /* ends with 0; NULL in the last row */
} fw_oui;

/* Which firmware a piece of hardware needs, for tools that upgrade; each table ends with a row of
 * VEXA_LAST_FIRMWARE. */
VEXA_API extern const fw_boardrev g_fw_boardrev_table_a[3];
VEXA_API extern const fw_boardrev g_fw_boardrev_table_b[3];
VEXA_API extern const fw_boardrev g_fw_boardrev_table_c[3];
VEXA_API extern const fw_part g_fw_flashvd_table_a[3];
VEXA_API extern const fw_part g_fw_bomrev_table_a[3];
VEXA_API extern const fw_part g_fw_flashjedec_table_a[3];
VEXA_API extern const fw_oui g_fw_oui_table[4];

/**
 * board_identify() - the board of this device; the answer is kept.
 *
 * Reads:   as get_board() does. Where that has no answer, the fallback record "Unknown" with system id 0, and a radio
 *          for each of the first four devices that pci_detect() finds of vendor 0x168c.
 * Returns: borrowed from the library for ever; never NULL.
 */
VEXA_API const board *board_identify(void);

/** update_cached_board() - replace what board_identify() answers; NULL makes the next call identify again, starting
 *  with corvo_identify(). */
VEXA_API void update_cached_board(const board *b);

/**
 * board_identify_ids() - vendor and system id of this device.
 *
 * Reads:   lines "vendorid=<hex>" and "systemid=<hex>" of "/proc/vexahal/system.info"; the low 16 bits of the last of
 *          each kind. An id without a line stays untouched.
 * Returns: 0; -1 when a line is missing; -ENOENT when the file cannot be opened.
 */
VEXA_API int board_identify_ids(uint16_t *vendor_id, uint16_t *system_id);

/**
 * get_board() - identify anew, into the heap copy.
 *
 * Reads:   board_identify_ids(); when the vendor is VEXA_VENDOR_ID, the record of that system id. A foreign vendor or
 *          unknown id leaves the copy as it is. Then what is particular to this device: cpu_mac and hw_rev of the
 *          identity block at the start of vexa_read_eeprom() (docs/eeprom.md); where it has no address,
 *          "eth0.macaddr" of "/proc/vexahal/system.info".
 * Returns: borrowed heap copy, at the same address each time; NULL when there is none yet.
 */
VEXA_API board *get_board(void);

/** corvo_identify() - the heap copy; get_board() while there is none. */
VEXA_API board *corvo_identify(void);

/** corvo_get_board() - the model record of a system id, borrowed; NULL for others. */
VEXA_API const board *corvo_get_board(uint16_t system_id);

/** corvo_identify_platform() - the model record whose platform is the text, borrowed; NULL when there is none. */
VEXA_API const board *corvo_identify_platform(const char *platform);

/** board_identify_platform() - the same as corvo_identify_platform(). */
VEXA_API const board *board_identify_platform(const char *platform);

/** corvo_get_device() - name and code of a system id, borrowed; NULL for others. */
VEXA_API const struct device *corvo_get_device(uint16_t system_id);

/** device_identify_by_sysid() - the same as corvo_get_device(); NULL for 0. */
VEXA_API const struct device *device_identify_by_sysid(uint16_t system_id);

/** map_board_name() - display name of a record, borrowed: that of a legacy model when its system id and the subsystem
 *  id of its first radio say so. */
VEXA_API const char *map_board_name(const board *b);

/** arch_name_to_type() - code of a legacy processor: "ar2313" 0, "ar2316" 1, "ar7100" 2, "ar7240" 3, "ar933x" 4,
 *  without case; any other text, or a @len that is not 6, gives 43. */
VEXA_API int arch_name_to_type(const char *name, size_t len);

/** corvo_get_bomrev() - "bomrev=<hex>" of "/proc/vexahal/board"; 0 without such a line, 0xffffffff without the
 *  file. */
VEXA_API uint32_t corvo_get_bomrev(void);

/** corvo_get_hw_board_id() - corvo_get_bomrev() with its low 8 bits cleared. */
VEXA_API uint32_t corvo_get_hw_board_id(void);

/** corvo_board_has_qrcode() - 1 when the identity block of vexa_read_eeprom() holds a QR-code text. */
VEXA_API int corvo_board_has_qrcode(void);

/* Questions about the record that board_identify() gives. */

/** board_get_poe_budget() - watts for the ports that feed others: poe_budget less poe_reserved, at least 0. */
VEXA_API int board_get_poe_budget(void);

/** board_has_poe() - 1 when board_get_poe_budget() is not 0. */
VEXA_API int board_has_poe(void);

/** board_get_cpu_mac() - the CPU's hardware address. Returns 0; -1 when @mac is NULL. */
VEXA_API int board_get_cpu_mac(uint8_t mac[6]);

/** get_radio_dev_name() - interface name of a radio, borrowed; "" when there is no such radio. */
VEXA_API const char *get_radio_dev_name(int radio_index);

/** get_main_phy() - the main port, borrowed: of the first group that has one, its only port or the first that is
 *  labelled "Main" or "PoE In + Data". NULL when there is none. */
VEXA_API const board_port *get_main_phy(void);

/** get_main_phy_port_id() - port_id of the main port; -1 when there is none. */
VEXA_API int get_main_phy_port_id(void);

/** get_main_phy_idx() - phy_idx of the main port; -1 when there is none. */
VEXA_API int get_main_phy_idx(void);

/** get_phy_port_id_by_idx() - port_id of the first port with a phy_idx; -1 when there is none. */
VEXA_API int get_phy_port_id_by_idx(int phy_idx);

/** get_num_of_eth_ports() - ports of all groups. */
VEXA_API int get_num_of_eth_ports(void);

/** has_accelerometer() - 1 when "/sys/bus/i2c/devices/1-0018/iio:device0/" can be opened. */
VEXA_API int has_accelerometer(void);

/**
 * prepare_accelerometer_status() - acceleration as {"x": n, "y": n, "z": n}, raw; 0 for an axis that cannot be read.
 *
 * Writes:  "50" to "sampling_frequency" of the accelerometer first.
 * Returns: a new reference; NULL when memory runs out.
 */
VEXA_API json_t *prepare_accelerometer_status(void);

/** corvo_board_is_beta_firmware() - 1 when min_fw_version is VEXA_BETA_FIRMWARE; 0 for NULL. */
VEXA_API int corvo_board_is_beta_firmware(const board *b);

/** zel_is_supported_by_old_wifi() - 1 when the old Wi-Fi stack drives the model; 0 for NULL. */
VEXA_API int zel_is_supported_by_old_wifi(const board *b);

/** zel_is_supported_ble_fast_adopt() - 1 when the model can be adopted over Bluetooth; 0 for NULL. */
VEXA_API int zel_is_supported_ble_fast_adopt(const board *b);

/* ------------------------------------------------------------------------------------------------------------------
 * Model predicates
 *
 * Questions about the system id of the record that board_identify() gives; all 0 on the fallback record. Nobody else
 * compares system ids.
 */

/** is_gen1() - 1 on the first hardware generation. */
VEXA_API int is_gen1(void);
/** is_gen2() - 1 on the second hardware generation. */
VEXA_API int is_gen2(void);
/** is_gen3_HB() - 1 on the third generation with two 5 GHz radios. */
VEXA_API int is_gen3_HB(void);
/** is_single_5ghz_gen3() - 1 on the third generation with one 5 GHz radio. */
VEXA_API int is_single_5ghz_gen3(void);
/** is_gen3() - 1 on the third generation. */
VEXA_API int is_gen3(void);
/** is_zel5() - 1 on the fifth generation. */
VEXA_API int is_zel5(void);
/** is_zel6() - 1 on the sixth generation. */
VEXA_API int is_zel6(void);
/** is_zel6_enterprise() - 1 on the enterprise models of the sixth generation. */
VEXA_API int is_zel6_enterprise(void);
/** is_zel6_tamar_iw() - 1 on the in-wall models of the sixth generation. */
VEXA_API int is_zel6_tamar_iw(void);
/** is_zel6_lr_aqr112c() - 1 on the long-range model 0xa620 with the first Ethernet transceiver: hw_rev below 21, or
 *  22. */
VEXA_API int is_zel6_lr_aqr112c(void);
/** is_zelac_iw() - 1 on the in-wall models of the second generation. */
VEXA_API int is_zelac_iw(void);
/** is_qca_ap() - 1 on the second, third and sixth generation. */
VEXA_API int is_qca_ap(void);
/** is_wifi_only() - 1 on models without a wired uplink. */
VEXA_API int is_wifi_only(void);
/** is_force_detect_loop() - 1 on models that must always look for loops. */
VEXA_API int is_force_detect_loop(void);
/** is_qm() - 1 on the mesh router 0xa667. */
VEXA_API int is_qm(void);
/** is_router_to_mesh() - 1 on 0xa674, and on is_qm() while "/etc/meshmode.conf" exists (looked at each time). */
VEXA_API int is_router_to_mesh(void);
/** is_qm_setup_complete() - 1 when "mgmt.is_setup_completed" of "/etc/persistent/cfg/mgmt" is anything but "false",
 *  its default. Does not look at the board. */
VEXA_API int is_qm_setup_complete(void);
/** is_wul_supported() - always 1. */
VEXA_API int is_wul_supported(void);

/* ------------------------------------------------------------------------------------------------------------------
 * System status and services
 *
 * Independent questions; what other daemons publish is read from "/var/run" and "/proc" each time. The texts of
 * get_version(), get_main_mac_str() and get_default_gw_interface() are process-wide; the next call overwrites them.
 * Log tag "libvexa_status".
 */

/** State of an interface and of the services. */
typedef struct dev_status {
    char ifname[16];
    uint8_t hwaddr[6];
    uint32_t ip; /* network byte order */
    uint32_t netmask;
    char ip_str[18]; /* dotted */
    char netmask_str[18];
    int present;    /* 1: the kernel counts for it */
    uint16_t flags; /* IFF_UP and others */
    uint64_t rx_bytes;
    uint64_t rx_packets;
    uint64_t rx_errors;
    uint64_t rx_dropped;
    uint64_t rx_multicast;
    uint64_t tx_bytes;
    uint64_t tx_packets;
    uint64_t tx_errors;
    uint64_t tx_dropped;
    uint32_t speed;  /* Mbit/s; 0 when the driver does not tell */
    uint32_t duplex; /* 0 half, 1 full; 255 when the driver does not tell */
    uint32_t speed2;
    uint32_t duplex2;
    int dhcpc; /* services, by fill_services() */
    int dhcpd;
    int ppp;
    int iptables;
    int ebtables;
} dev_status;

/**
 * fill_dev_status() - what the kernel knows about an interface.
 * @ifname: NULL as well as an unknown name gives what there is without one.
 * @st: zero it first: hwaddr, flags and counters stay untouched where the kernel does not answer, and the services in
 *      any case.
 *
 * Reads:   "/proc/net/dev", interface requests, and the driver's link settings, twice: a first speed of 10 gives way
 *          to another second one, a first half duplex to a second full one.
 * Returns: 0, also for an unknown name; -1 when the file cannot be opened, -ENOENT when it lacks its two lines of
 *          heading, -ESRCH without a socket.
 */
VEXA_API int fill_dev_status(const char *ifname, dev_status *st);

/**
 * fill_services() - set the five service flags and nothing else.
 *
 * Reads:   "/tmp/system.cfg", unless it is a regular file of mode 0777: "dhcpc", "dhcpd" and "ppp" are on when both
 *          "<name>.status" and "<name>.1.status" are "enabled", "iptables" and "ebtables" with "<name>.50.status".
 * Returns: 0.
 */
VEXA_API int fill_services(dev_status *st);

/** get_ethtool_link_status() - 1 when the link is up, 0 when it is down, -1 when the driver does not tell. */
VEXA_API int get_ethtool_link_status(const char *ifname);

/**
 * replace_ifname() - rename "lan3" to "eth3", unless the name begins with @prefix and a number.
 * @ifname: 16 bytes, rewritten in place; a text without a number, of more than 16 characters, or whose new name does
 *          not fit stays.
 */
VEXA_API void replace_ifname(char *ifname, const char *prefix);

/**
 * get_version() - firmware version, "<first line of /usr/etc/.version>.<first line of /usr/etc/.build>", cut to 63
 *                 characters; kept once it was found.
 * @version: set to the text of the library, never NULL; "unknown.0" without the files.
 *
 * Returns: 0; -EINVAL when a file is empty, or the negated errno of reading it.
 */
VEXA_API int get_version(const char **version);

/**
 * system_is_xxx() - a switch that a file stands for.
 * @def: result when the file cannot be read.
 *
 * Returns: 1 for any file that is there; below "/proc", 1 when its first line is "true" and 0 when it is another.
 */
VEXA_API int system_is_xxx(const char *path, int def);

/** system_set_xxx() - set such a switch: writes "true" or "false" and a line feed; outside "/proc" a false value
 *  removes the file. Returns 0 or -1. */
VEXA_API int system_set_xxx(const char *path, int value);

/** system_set_value() - write a text and a line feed. Returns 0 or -1. */
VEXA_API int system_set_value(const char *path, const char *value);

/** get_boardrevision() - the number behind "boardrevision=" in a file such as "/proc/vexahal/board"; 0 without such a
 *  line, -1 when the file cannot be opened. */
VEXA_API int get_boardrevision(const char *path);

/** get_boardsn() - what stands behind "serialno=" in such a file, and a line feed. Returns 0; -1 when the file cannot
 *  be opened or the text does not fit @size. */
VEXA_API int get_boardsn(const char *path, char *out, int size);

/** get_main_mac_str() - "eth0.macaddr" of "/proc/vexahal/system.info", else "wifi0.macaddr", else
 *  "00:11:22:33:44:55". Returns a text of the library. */
VEXA_API const char *get_main_mac_str(void);

/** get_manufid() - the hexadecimal "manufid" of "/proc/vexahal/system.info", at most four digits; 0 without it. */
VEXA_API long get_manufid(void);

/**
 * get_mac_by_ip() - the hardware address that the kernel knows for an IPv4 address.
 * @ip: dotted; NULL takes the first neighbour there is.
 * @size: bytes at @mac; the text is cut to fit (less than 18 is logged).
 *
 * Reads:   complete entries of "/proc/net/arp".
 * Returns: 1; 0, with @mac untouched, when there is none.
 */
VEXA_API int get_mac_by_ip(const char *ip, char *mac, size_t size);

/**
 * get_gateway() - gateway of the default route that leads out of "br0".
 * @ip_text: dotted; empty when it does not fit.
 * @ip_bin: 4 bytes, network byte order.
 * @len: bytes at @ip_text.
 *
 * Returns: 1; 0 when there is no such route; -1 when the kernel's routes cannot be read.
 */
VEXA_API int get_gateway(char *ip_text, void *ip_bin, unsigned len);

/** get_gateway_mac() - get_mac_by_ip() of that gateway. Returns 1; 0 when either is not known. */
VEXA_API int get_gateway_mac(char *mac, size_t size);

/** add_ip_neigh_entry() - ask the kernel to know an IPv4 neighbour and to look for its hardware address; whether it
 *  does is not told. Returns 0; -1 when the text is no address, there is no such interface, or the request cannot be
 *  sent. */
VEXA_API int add_ip_neigh_entry(const char *ifname, const char *ip);

/** interface_is_up() - 0 when the interface is up, -1 when it is not, is not there, or the kernel does not tell. */
VEXA_API int interface_is_up(int ifindex);

/** interface_get_ipaddress() - first IPv4 address and mask of an interface, in host byte order. Returns 0 or -1. */
VEXA_API int interface_get_ipaddress(int ifindex, uint32_t *ip, uint32_t *mask);

/** ip_belongs_to_subnet() - 1 when two addresses agree under a mask, all in the same byte order. */
VEXA_API int ip_belongs_to_subnet(uint32_t ip, uint32_t net, uint32_t mask);

/**
 * wan_discover_possible() - whether a second interface may be used to discover an uplink.
 * @ifindex_a: the interface in use.
 * @ifindex_b: the other.
 * @ip: host byte order.
 *
 * Returns: 0; -ENETDOWN when either is not up; -ENODEV when either has no address; -EADDRNOTAVAIL when @ip or the
 *          address of the other lies in the subnet of the first.
 */
VEXA_API int wan_discover_possible(int ifindex_a, int ifindex_b, uint32_t ip);

/** system_internet_status() - the digit in "/var/run/system.internet"; -1 without the file. */
VEXA_API int system_internet_status(void);

/** system_dhcp_status() - "/var/run/dhcpc.last_state" as a number: 1 "deconfig", 2 "leasefail", 3 "bound", 4 "renew",
 *  else 0. */
VEXA_API int system_dhcp_status(void);

/** system_is_ssh() - 1 when "/proc/net/tcp" tells of a socket that listens on port 22 of any address. */
VEXA_API int system_is_ssh(void);

/** touch_file() - make a file where there is none, and set its mode. Returns 0; -1 on failure (logged). */
VEXA_API int touch_file(const char *path, mode_t mode);

/** get_default_gw_interface() - interface of the default route as the command "ip" tells, "br0" when it does not
 *  (logged). The words of several routes stand in lines. Returns a text of the library. */
VEXA_API const char *get_default_gw_interface(void);

/** get_uptime_from_sysinfo() - seconds since the start; -1 on failure. */
VEXA_API long get_uptime_from_sysinfo(void);

/** get_uptime_from_file() - the whole seconds that a file like "/proc/uptime" begins with; -1 when there are none. */
VEXA_API long get_uptime_from_file(const char *path);

/** get_uptime_from_proc() - get_uptime_from_file() of "/proc/uptime". */
VEXA_API long get_uptime_from_proc(void);

/** uptime2str() - "1d1h1m1s", without the parts that are 0. Returns 0; -1 when the text was cut to fit @size. */
VEXA_API int uptime2str(unsigned long seconds, char *out, size_t size);

/** get_system_time() - local time as weekday, month, day, hour, minute, second, and year with a line feed. Returns 0;
 *  -1, with empty fields, when it cannot be told. */
VEXA_API int get_system_time(char fields[7][8]);

/** get_system_time_str() - local time as "2026-05-17T08:30:00". Returns 0; -1 when it cannot be told or does not fit
 *  @size. */
VEXA_API int get_system_time_str(char *out, size_t size);

/* ------------------------------------------------------------------------------------------------------------------
 * Bridges, forwarding entries and hardware addresses
 *
 * The kernel's bridges by their files below "/sys/class/net". No state, no log lines; fdb_foreach() and
 * fdb_delneigh() tell of failures on standard error.
 */

/** A device on the bus. The two subsystem fields are byte-swapped: what the bus calls 0x3009 reads as 0x0930. */
typedef struct pci_dev {
    uint8_t bus;
    uint8_t slot;
    uint8_t function;
    uint16_t vendor_id;
    uint16_t device_id;
    uint16_t subsystem_id;
    uint16_t subsystem_vendor_id;
    uint8_t revision;
    uint32_t irq;
} pci_dev;

/**
 * get_mac_brinfo() - where and when a bridge saw a hardware address last.
 * @mac: "XX:XX:XX:XX:XX:XX", without case.
 * @age_seconds: since then.
 * @port: number of the port, its low byte.
 *
 * Reads:   "brforward" of the bridge, records of 16 bytes.
 * Returns: 1; 0, with nothing written, when the bridge does not know it.
 */
VEXA_API int get_mac_brinfo(const char *bridge, const char *mac, unsigned *age_seconds, unsigned *port);

/** get_br_port_state() - spanning tree state of a port: 0 disabled, 1 listening, 2 learning, 3 forwarding, 4
 *  blocking; -1 when it cannot be read. */
VEXA_API int get_br_port_state(const char *bridge, const char *ifname);

/** is_brif_disabled() - 1 when the state is below 1, that is also when it cannot be read. */
VEXA_API int is_brif_disabled(const char *bridge, const char *ifname);

/** is_brif_forwarding() - 1 when the state is 3. */
VEXA_API int is_brif_forwarding(const char *bridge, const char *ifname);

/** get_ifname_from_br_portno() - interface name of a bridge port.
 *  @ifname: 16 bytes. Returns 1; 0, with nothing written, when there is no such port. */
VEXA_API int get_ifname_from_br_portno(const char *bridge, unsigned port_no, char *ifname);

/**
 * fdb_foreach() - visit the forwarding entries of bridges.
 * @bridge_prefix: takes the bridge of that name and those that go on with "."; NULL takes all.
 * @exclude: port names, ended by NULL, that are left out, and with each those that go on with "."; NULL for none.
 * @callback: gets @arg, a record, and the name of the last port that was looked at (not that of the record).
 *
 * Reads:   "brforward" in records of 24 bytes, of which byte 6 is the port number. Only 16 ports of a bridge count,
 *          with a warning on standard error when the sixteenth is reached.
 * Returns: 0; -1 when the interfaces cannot be listed.
 */
VEXA_API int fdb_foreach(const char *bridge_prefix, const char **exclude,
                         void (*callback)(void *arg, const uint8_t *record, const char *name), void *arg);

/** fdb_delneigh() - ask the kernel to forget a learned address of a bridge port; whether it knew it is not told.
 *  Returns 0 or a negated errno. */
VEXA_API int fdb_delneigh(const uint8_t mac[6], const char *ifname);

/** devhwaddr_get_iface() - hardware address of an interface. Returns 0; -ECHILD when the kernel does not tell; -1
 *  without a socket. */
VEXA_API int devhwaddr_get_iface(uint8_t mac[6], const char *ifname);

/** devhwaddr_get() - hardware address of the device: of "eth0", else "eth0_real", else "br0". Returns 0; 1 when there
 *  is none. */
VEXA_API int devhwaddr_get(uint8_t mac[6]);

/** devhwaddr_generate() - an address for a device that has none: VEXA_OUI, DE, AD, @last. Returns 0. */
VEXA_API int devhwaddr_generate(uint8_t mac[6], uint8_t last);

/**
 * vexa_read_eeprom() - the factory data.
 *
 * Reads:   the first 65536 bytes, in one read, of the partition that "/proc/mtd" names "EEPROM" (without case):
 *          "/dev/mtd<n>", else "/dev/mtd/<n>". Without such a partition, the file "EEPROM" of the current directory.
 * Returns: a new buffer for buffer_destroy(); NULL when there are less than 65536 bytes or memory runs out.
 */
VEXA_API buffer *vexa_read_eeprom(void);

/**
 * pci_detect() - the devices of a vendor on the bus.
 * @max: records at @out.
 *
 * Reads:   "/proc/bus/pci/devices", and for revision and subsystem "/proc/bus/pci/<bus>/<slot>.<function>"; they are 0
 *          when that is too short.
 * Returns: records written; -1 when the list cannot be opened.
 */
VEXA_API int pci_detect(pci_dev *out, int max, uint16_t vendor);

/* ------------------------------------------------------------------------------------------------------------------
 * Processes, descriptors and sockets
 *
 * A snapshot of "/proc", taken in one call and not updated. No state. Log tag "libvexa_proc".
 */

enum vexa_fd_type { VEXA_FD_UNKNOWN, VEXA_FD_FILE, VEXA_FD_ANON, VEXA_FD_PIPE, VEXA_FD_SOCKET };

enum vexa_socket_kind {
    VEXA_SOCKET_UNKNOWN,
    VEXA_SOCKET_UNIX,
    VEXA_SOCKET_TCP,
    VEXA_SOCKET_TCP6,
    VEXA_SOCKET_UDP,
    VEXA_SOCKET_UDP6
};

/** What is particular to a TCP or UDP socket. */
typedef struct vexa_ip_socket {
    uint32_t local_port;  /* 0 when unbound */
    uint32_t remote_port; /* 0 when unconnected */
    uint32_t state;       /* 0 unknown; 1 established to 12, the kernel's numbers. Of UDP only 1 and 7 */
} vexa_ip_socket;

/** What is particular to a local socket. */
typedef struct vexa_unix_socket {
    uint32_t refcnt;
    uint32_t type;  /* 0 unknown, 1 stream, 2 datagram, 3 raw, 4 reliable datagram, 5 sequenced packets */
    uint32_t state; /* 0 unknown, 2 unconnected, 3 listening, 4 connecting, 5 connected, 6 disconnecting */
    char *path;     /* to the first blank; NULL for none. "@" stands for a zero byte */
} vexa_unix_socket;

/** A socket of the network namespace that the snapshot was taken in. Owned by the snapshot. */
typedef struct vexa_socket {
    uint32_t inode;
    uint32_t kind; /* vexa_socket_kind */
    union {
        vexa_ip_socket ip;
        vexa_unix_socket un;
    };
} vexa_socket;

/** A descriptor of a process. */
typedef struct vexa_ps_fd {
    vexa_list links;
    uint32_t fd_type; /* vexa_fd_type */
    union {
        char *link;                /* owned target of a file, an anonymous file or a pipe */
        const vexa_socket *socket; /* NULL when it was not found: it is of another kind or network namespace */
    };
} vexa_ps_fd;

typedef struct vexa_ps_entry {
    vexa_list links;
    int32_t pid;
    char *comm; /* name of the command, any bytes; owned */
    char state; /* 'R', 'S', 'Z', ... */
    int32_t ppid;
    unsigned long vsz; /* KiB */
    long rss;          /* KiB */
    char *cmdline;     /* words with blanks between them, the first 1023 characters; owned, NULL for none */
    int32_t fd_count;  /* -1 when they cannot be listed, -2 when listing them failed half-way */
    vexa_list fds;     /* of vexa_ps_fd, in the order opposite to the kernel's */
} vexa_ps_entry;

/** The sockets of a snapshot by their inodes. */
typedef struct vexa_socket_table vexa_socket_table;

typedef struct vexa_ps_list {
    vexa_list entries; /* of vexa_ps_entry, in the order of "/proc" */
    uint32_t count;
    vexa_socket_table *sockets; /* NULL without descriptors */
} vexa_ps_list;

/**
 * vexa_ps_filter() - a snapshot of the processes.
 * @with_fds: non-zero lists descriptors, too; 0 only counts them.
 * @filter: called with @arg for each finished entry; the result 1 drops it. NULL keeps all.
 *
 * Reads:   of each process "stat" (the last ")" ends the name, which may hold anything, line feeds too), "cmdline" and
 *          "fd"; with descriptors first "/proc/net/unix", "tcp", "tcp6", "udp" and "udp6", once. A link target of 386
 *          and more characters, or one that ends in ":[number]" and begins with none of "a", "p" and "s", is left out.
 * Returns: a new snapshot for vexa_ps_list_free() or vexa_ps_list_to_array(); NULL when "/proc" cannot be opened or
 *          memory runs out (logged).
 * Errors:  a process that ends meanwhile is left out; a process, descriptor or socket without memory is left out
 *          (logged; for a socket with a line on standard output). Without memory for the buckets of its hash table
 *          the process ends with exit(-1).
 */
VEXA_API vexa_ps_list *vexa_ps_filter(int with_fds, int (*filter)(vexa_ps_entry *entry, void *arg), void *arg);

/** vexa_ps() - the same as vexa_ps_filter(0, NULL, NULL). */
VEXA_API vexa_ps_list *vexa_ps(void);

/** vexa_ps_list_free() - release a snapshot; NULL is allowed. */
VEXA_API void vexa_ps_list_free(vexa_ps_list *list);

/**
 * vexa_fds_to_array() - the descriptors of a process.
 *
 * Shapes:  {fd_type: "unknown", "file", "anon", "pipe" or "socket"}; with {link} for a file, an anonymous file or a
 *          pipe; for a socket that was found with {socket_type: "unix", "tcp", "tcp6", "udp" or "udp6", socket}.
 *          socket: {local_port, remote_port, state}, a port of 0 being "*"; of a unix socket {refcnt, type, path,
 *          state}, without "path" when it has none. Bytes that are no UTF-8 become U+FFFD.
 * Returns: a new array; NULL without memory (logged).
 */
VEXA_API json_t *vexa_fds_to_array(vexa_ps_entry *entry);

/**
 * vexa_ps_list_to_array() - the processes of a snapshot.
 * @list: stolen; NULL gives an empty array.
 *
 * Shapes:  {pid, ppid, vsz, rss, stat, fd_count, comm, fds: [vexa_fds_to_array()]}; vsz and rss in KiB.
 * Returns: a new array; NULL without memory (logged). A process without memory is left out (logged).
 */
VEXA_API json_t *vexa_ps_list_to_array(vexa_ps_list *list);

/** vexa_ps_array() - the same as vexa_ps_list_to_array(vexa_ps()). */
VEXA_API json_t *vexa_ps_array(void);

/* ------------------------------------------------------------------------------------------------------------------
 * Memory and connection tracking
 *
 * No state. Log tag "libvexa_proc".
 */

/** Memory counters in kB, by the keys of "/proc/meminfo". */
typedef struct vexa_meminfo {
    uint64_t mem_total;
    uint64_t mem_free;
    uint64_t mem_available;
    uint64_t buffers;
    uint64_t cached;
    uint64_t active;
    uint64_t inactive;
    uint64_t active_anon;
    uint64_t inactive_anon;
    uint64_t active_file;
    uint64_t inactive_file;
    uint64_t unevictable;
    uint64_t mlocked;
    uint64_t dirty;
    uint64_t writeback;
    uint64_t anon_pages;
    uint64_t mapped;
    uint64_t shmem;
    uint64_t slab;
    uint64_t s_reclaimable;
    uint64_t s_unreclaim;
    uint64_t kernel_stack;
    uint64_t page_tables;
    uint64_t commit_limit;
    uint64_t committed_as;
    double used_percent; /* of mem_total, what is not available; 0.0 without a total, negative above it */
} vexa_meminfo;

/** A host of the connection-tracking table. Borrowed from the ranking. */
typedef struct conntrack_host {
    const char *address;
    uint32_t count;              /* as source and as destination of flows */
    struct conntrack_host *next; /* the next in the ranking; NULL at the end */
} conntrack_host;

typedef struct conntrack_hosts {
    conntrack_host *first; /* the host that was met most often; of equal ones the one met first. NULL without any */
    uint32_t count;        /* of hosts */
} conntrack_hosts;

/**
 * meminfo() - memory counters of the running kernel.
 * @m: untouched on failure.
 *
 * Reads:   "/proc/meminfo" in pieces of 31 characters, until each counter was found; one that the kernel does not
 *          print stays 0. A piece without a colon is logged as an error.
 * Returns: 0; -1 when the file cannot be opened (logged).
 */
VEXA_API int meminfo(vexa_meminfo *m);

/** vexa_meminfo_to_obj() - new JSON object of the 25 counters, in their order under the keys of "/proc/meminfo"; the
 *  percentage is left out. NULL without memory (logged). */
VEXA_API json_t *vexa_meminfo_to_obj(const vexa_meminfo *m);

struct sysinfo;

/**
 * get_memused_percent() - what is not free, in percent of all memory, by the caller's record of sysinfo().
 *
 * Reads:   "/proc/meminfo", only to learn whether it can be read: without it the result has no meaning.
 * Returns: the percentage, not that of vexa_meminfo: what is available and not free counts as used. 0 for a record
 *          without a total.
 */
VEXA_API float get_memused_percent(const struct sysinfo *si);

/**
 * get_top_conntrack_hosts() - the hosts of the connection-tracking table, ranked by how often they occur.
 *
 * Reads:   "/proc/net/nf_conntrack": of each line that begins with "ipv4" or "ipv6" the first "src=" and the first
 *          "dst=", each up to a blank. A line longer than 319 characters is taken in such pieces.
 * Returns: a new ranking for free_conntrack_hosts(); NULL when the file cannot be opened or memory runs out (logged).
 * Errors:  a host without memory is left out (logged). Without memory for the buckets of its hash table the process
 *          ends with exit(-1).
 */
VEXA_API conntrack_hosts *get_top_conntrack_hosts(void);

/** free_conntrack_hosts() - release a ranking with its hosts; NULL is allowed. */
VEXA_API void free_conntrack_hosts(conntrack_hosts *h);

/* ------------------------------------------------------------------------------------------------------------------
 * System bus and power devices
 *
 * A connection to the system bus on the host's libevent loop, which finds its way back after a loss; and the state of
 * the power outlets and supplies that other daemons publish there. All of it belongs to the loop's thread.
 */

struct event;
struct event_base;
struct ubus_context;
struct blob_attr;

/** vexa_ubus_interface_t.flags: the service is not looked up by itself. */
#define VEXA_UBUS_NO_LOOKUP (1u << 0)
/** vexa_ubus_interface_t.flags: keep trying when the first connection fails. */
#define VEXA_UBUS_RETRY (1u << 1)

typedef struct vexa_ubus_interface vexa_ubus_interface_t;

/** A bus connection, made by vexa_ubus_create(). Hosts read it and change nothing but what the bus client lets them. */
struct vexa_ubus_interface {
    struct event_base *base;
    struct ubus_context *ctx; /* NULL until the first connection; a lost one stays for its reconnection */
    struct event *read_event; /* NULL while disconnected */
    char *service;
    char *socket_path;
    uint32_t service_id; /* 0 while unknown; new after each reconnection */
    struct event *timer; /* NULL while connected */
    unsigned flags;
    void (*on_connect)(vexa_ubus_interface_t *iface); /* NULL for none */
    void (*on_close)(vexa_ubus_interface_t *iface);   /* NULL for none */
    vexa_list links;
};

/**
 * vexa_ubus_init() - forget every interface and allow vexa_ubus_shutdown().
 *
 * State:   the process-wide list of interfaces. One that exists lives on for its owner to close.
 * Returns: 0.
 */
VEXA_API int vexa_ubus_init(void);

/**
 * vexa_ubus_create() - connect to the bus and stay connected.
 * @socket_path: such as "/var/run/ubus.sock", shorter than 108 characters; copied.
 * @service: name of the object to look up; copied.
 * @flags: VEXA_UBUS_NO_LOOKUP, VEXA_UBUS_RETRY.
 * @on_connect: called when a connection is made, not when a lost one is mended. It may close the interface.
 * @on_close: called once, before the interface is released.
 *
 * After a loss the interface tries again each second; then the service is looked up anew. A look-up that fails leaves
 * the connection in place.
 *
 * Returns: new, for vexa_ubus_close(); NULL (logged as an error) when an argument is missing, memory runs out, the
 *          connection fails without VEXA_UBUS_RETRY, or the loop refuses the event; NULL, too, when @on_connect
 *          closed it.
 */
VEXA_API vexa_ubus_interface_t *vexa_ubus_create(struct event_base *base, const char *socket_path, const char *service,
                                                 unsigned flags, void (*on_connect)(vexa_ubus_interface_t *iface),
                                                 void (*on_close)(vexa_ubus_interface_t *iface));

/** vexa_ubus_close() - unlink the interface, call on_close, release everything. Not during a bus call of its own. */
VEXA_API void vexa_ubus_close(vexa_ubus_interface_t *iface);

/** vexa_ubus_shutdown() - close every interface, once vexa_ubus_init() was called. Returns 0. */
VEXA_API int vexa_ubus_shutdown(void);

/**
 * vexa_ubus_find_service() - look the interface's service up into service_id.
 *
 * Returns: 0; -EINVAL when interface, connection or name is missing; -ENOSYS when nobody offers the service (logged as
 *          a warning), and then the id is 0.
 */
VEXA_API int vexa_ubus_find_service(vexa_ubus_interface_t *iface);

/** vexa_ubus_find_object() - look any object up; @id is written on success only. Results as vexa_ubus_find_service().
 */
VEXA_API int vexa_ubus_find_object(vexa_ubus_interface_t *iface, const char *name, uint32_t *id);

/**
 * vexa_outlet_get_outlet_status_json() - state of the power outlets.
 * @max_age_s: how old an answer may be, in seconds. 0 asks the bus.
 *
 * Sends:   "status" to "power.outlet" on "/var/run/ubus.sock"; waits at most 3 seconds.
 * Shape:   {"outlet_table": [{"index": 1, "name": text, "relay_state": bool, "cycle_enabled": bool, "outlet_caps":
 * bits, "outlet_voltage": V, "outlet_current": A, "outlet_power": W, "outlet_power_factor": 0 to 1, "outlet_energy":
 *          Wh}], "outlet_usb_power_budget": W, "outlet_ac_power_budget": W, "outlet_ac_power_consumption": W,
 *          "outlet_ac_energy_7": Wh of seven days, "outlet_ac_energy_30": Wh of thirty days,
 *          "outlet_ac_energy_account_time_7": s, "outlet_ac_energy_account_time_30": s}. Members that the device does
 *          not report are missing; others that it reports are passed on.
 * State:   the last answer of the process, with its time. An answer younger than @max_age_s is given again; an update
 *          makes it fresh; a failure forgets it.
 * Returns: a new object that is the caller's alone; NULL on failure (logged).
 */
VEXA_API json_t *vexa_outlet_get_outlet_status_json(unsigned max_age_s);

/**
 * vexa_outlet_status_update_json_payload() - merge what the outlets' daemon announced into the last answer.
 * @update: object of the same shape, with what has changed; borrowed. Entries of "outlet_table" are matched by "index";
 *          an unknown one is added.
 *
 * Returns: 0; -1 without a last answer, or when the update is not of that shape. Nothing is merged then.
 */
VEXA_API int vexa_outlet_status_update_json_payload(const json_t *update);

/**
 * vexa_psu_get_json_psu_table() - state of the power supplies; all else as vexa_outlet_get_outlet_status_json().
 *
 * Sends:   "status" to "power.psu", whose answer holds "psu_table".
 * Shape:   [{"psu_idx": 1, "name": text, "present": bool, "state": text, "psu_voltage": V, "psu_current": A,
 *          "psu_power": W, "psu_temperature": degrees Celsius}]
 */
VEXA_API json_t *vexa_psu_get_json_psu_table(unsigned max_age_s);

/**
 * mcagent_stats_parse_ap_stats() - satisfaction from the multicast agent's statistics message.
 * @msg: the message as the bus delivered it; borrowed.
 * @satisfaction: gets -1 to 100; untouched on failure.
 *
 * Reads:   field "satisfaction", an integer of any width or decimal text.
 * Returns: 0, or -1 when the field is missing or no such number (logged as an error).
 */
VEXA_API int mcagent_stats_parse_ap_stats(struct blob_attr *msg, int *satisfaction);

/* ------------------------------------------------------------------------------------------------------------------
 * Guest portals
 *
 * The guest-access daemon publishes a directory for each portal below "/var/run/guest/portal". Lists are items
 * separated by line feeds or commas; an item matches as a whole and with case, and an empty one never does. Nothing
 * refreshes a portal but reading it again. Log tag "guest_portals".
 */

typedef struct guest_portal {
    vexa_list links;
    char name[32];      /* of the directory, cut to 31 characters */
    buffer *authorized; /* owned text of the file of that name: hardware addresses of clients; NULL without the file */
    buffer *devnames;   /* names of interfaces */
    buffer *vlans;      /* numbers */
} guest_portal;

/** Portals in the order they were added. It owns them, and they come from malloc(). */
typedef struct guest_portal_set {
    vexa_list portals;
} guest_portal_set;

/** guest_portal_init() - start with an empty record. */
VEXA_API void guest_portal_init(guest_portal *p);

/** guest_portal_clear() - release the lists. The name stays; clearing again is harmless. */
VEXA_API void guest_portal_clear(guest_portal *p);

/**
 * guest_portal_read() - take name and lists of a portal; earlier ones are released.
 * @name: of the directory, of any length. One with a slash, "." and ".." are no portals.
 *
 * Reads:   the files "authorized", "devnames" and "vlans" of the directory, without following a symbolic link. What is
 *          no regular file reads as empty.
 * Errors:  a file that cannot be opened leaves its list NULL (a debug line); without memory the list is NULL or ends
 *          early (logged).
 */
VEXA_API void guest_portal_read(guest_portal *p, const char *name);

/** guest_portal_is_auth() - 1 when the portal has authorized a client; 0 for a NULL portal. */
VEXA_API int guest_portal_is_auth(const guest_portal *p, const char *mac);

/** guest_portal_has_device() - 1 when an interface belongs to the portal; 0 for a NULL portal. */
VEXA_API int guest_portal_has_device(const guest_portal *p, const char *dev);

/** guest_portal_set_init() - start with an empty set. */
VEXA_API void guest_portal_set_init(guest_portal_set *set);

/** guest_portal_set_clear() - remove and release every portal. */
VEXA_API void guest_portal_set_clear(guest_portal_set *set);

/** guest_portal_set_add() - add a portal from malloc() at the end; stolen. */
VEXA_API void guest_portal_set_add(guest_portal_set *set, guest_portal *p);

/**
 * guest_portal_set_read() - add a portal for every entry of the portal directory.
 *
 * Errors:  logged when the directory cannot be opened or there is no memory for a portal. An entry that is no
 *          directory becomes a portal without lists.
 */
VEXA_API void guest_portal_set_read(guest_portal_set *set);

/** guest_portal_set_count() - portals of the set. */
VEXA_API int guest_portal_set_count(const guest_portal_set *set);

/** guest_portal_from_device() - borrowed portal that an interface belongs to, the last one added; NULL for none. */
VEXA_API guest_portal *guest_portal_from_device(const guest_portal_set *set, const char *dev);

/** guest_portal_from_name() - borrowed portal of that name, the last one added; NULL for none. */
VEXA_API guest_portal *guest_portal_from_name(const guest_portal_set *set, const char *name);

/** guest_portal_from_vlan() - borrowed portal that lists a VLAN, the last one added; NULL for none and for a negative
 *  number. */
VEXA_API guest_portal *guest_portal_from_vlan(const guest_portal_set *set, int vlan);

/* ------------------------------------------------------------------------------------------------------------------
 * Environment and analytics settings
 *
 * Where the device reports to and what it may report. A key of the running configuration "/tmp/system.cfg" that is
 * missing or empty is looked for in "/etc/persistent/cfg/mgmt".
 */

/** The custom interval of the inform hook; 0 until init_custom_interval_inform_server() finds the hook enabled. */
VEXA_API extern uint32_t inform_server_interval;

/** 1 while the inform hook is enabled. */
VEXA_API extern int32_t has_inform_server_bool;

/**
 * get_analytics_mode() - what may be reported: 0 nothing, 1 everything, 2 without names.
 *
 * Reads:   the booleans "system.analytics.status" and "system.analytics.anonymous". With the second: a true status
 *          (the default) gives 1, or 2 for an anonymous one; a false one gives 0. Without it: a true status gives 1
 *          and anything else 2, so that devices that never chose report without names.
 */
VEXA_API int get_analytics_mode(cfg_entry *cfg);

/** get_analytics_coredump_mode() - the boolean "system.analytics.coredump"; 0 without it. */
VEXA_API int get_analytics_coredump_mode(cfg_entry *cfg);

/** get_trel_env() - "mgmt.trel.env": 2 for "dev" (development), 1 for "stage" (staging), else 0 (production). */
VEXA_API int get_trel_env(void);

/** get_trel_env_limit_prod() - get_trel_env(); but development instead of production for a build that is no release
 *  (get_vexa_scm_reftype() is not 1), unless "mgmt.trel.env.force" begins with "1" or "enable". */
VEXA_API int get_trel_env_limit_prod(void);

/**
 * init_custom_interval_inform_server() - take the interval over when "corvo.inform.hook.status" of "/tmp/system.cfg"
 *                                        is "enabled".
 *
 * Writes:  the interval to "/proc/stat_interval" then.
 * Returns: 0; -1 when it could not be written there.
 */
VEXA_API int init_custom_interval_inform_server(unsigned interval);

/** get_custom_interval() - inform_server_interval. */
VEXA_API unsigned get_custom_interval(void);

/** has_qa_inform_server() - has_inform_server_bool. */
VEXA_API int has_qa_inform_server(void);

/* ------------------------------------------------------------------------------------------------------------------
 * Ciphers and hashes
 */

/** Key schedules of AES (FIPS-197). Filled by rijndael_set_key() or rijndael_set_key_enc_only(); the caller clears it
 *  before use and wipes it afterwards. */
typedef struct rijndael_ctx {
    int32_t enc_only; /* 1: only ek is there */
    int32_t Nr;       /* rounds: 10, 12 or 14 */
    uint32_t ek[60];  /* round keys of the cipher */
    uint32_t dk[60];  /* round keys of the inverse cipher */
} rijndael_ctx;

/**
 * rijndaelKeySetupEnc() - round keys of the cipher.
 * @rk: room for 60 words; 4 * (rounds + 1) are written.
 * @key: @bits / 8 bytes.
 *
 * Returns: rounds: 10, 12 or 14 for 128, 192 or 256 bits; 0 for another number, with @rk untouched.
 */
VEXA_API int rijndaelKeySetupEnc(uint32_t rk[60], const uint8_t *key, int bits);

/** rijndaelKeySetupDec() - round keys of the inverse cipher: last round first, InvMixColumns applied to all but the
 *  first and the last. Results as of rijndaelKeySetupEnc(). */
VEXA_API int rijndaelKeySetupDec(uint32_t rk[60], const uint8_t *key, int bits);

/** rijndaelEncrypt() - one block under the round keys of rijndaelKeySetupEnc(); @in may be @out. */
VEXA_API void rijndaelEncrypt(const uint32_t rk[60], int rounds, const uint8_t in[16], uint8_t out[16]);

/** rijndael_set_key_enc_only() - prepare @ctx for rijndael_encrypt(). Returns 0; -1 unless @bits is 128, 192 or 256,
 *  with @ctx untouched. */
VEXA_API int rijndael_set_key_enc_only(rijndael_ctx *ctx, const uint8_t *key, int bits);

/** rijndael_set_key() - prepare @ctx for both directions. Results as of rijndael_set_key_enc_only(). */
VEXA_API int rijndael_set_key(rijndael_ctx *ctx, const uint8_t *key, int bits);

/** rijndael_encrypt() - one block; @src may be @dst. */
VEXA_API void rijndael_encrypt(const rijndael_ctx *ctx, const uint8_t src[16], uint8_t dst[16]);

/** rijndael_decrypt() - one block; @src may be @dst. Whether @ctx has the keys for it is not looked at. */
VEXA_API void rijndael_decrypt(const rijndael_ctx *ctx, const uint8_t src[16], uint8_t dst[16]);

/** aes_cbc_generate_iv() - gen_rand_bytes(@iv, @len), and its result. */
VEXA_API int aes_cbc_generate_iv(uint8_t *iv, size_t len);

/**
 * aes_cbc_encrypt_128() - encrypt whole blocks in place with AES-128 in CBC mode; no padding is added.
 * @key: 16 bytes; expanded on each call and wiped from the stack.
 * @iv: 16 bytes, left as they are.
 * @len: bytes; 0 is allowed.
 *
 * Returns: 0; -1 when @len is no multiple of 16, with @data untouched.
 */
VEXA_API int aes_cbc_encrypt_128(const uint8_t key[16], const uint8_t iv[16], uint8_t *data, size_t len);

/** aes_cbc_decrypt_128() - the way back from aes_cbc_encrypt_128(); no padding is looked at. A @len of 0 is -1,
 *  too. */
VEXA_API int aes_cbc_decrypt_128(const uint8_t key[16], const uint8_t iv[16], uint8_t *data, size_t len);

/** A SHA-256 (FIPS 180-4) under way. */
typedef struct sha256_ctx {
    uint32_t tot_len;   /* bytes compressed, a multiple of 64 */
    uint32_t len;       /* bytes that wait in block */
    uint8_t block[128]; /* the padding may need a second block */
    uint32_t h[8];
} sha256_ctx;

/** sha256_init() - begin a message. */
VEXA_API void sha256_init(sha256_ctx *ctx);

/** sha256_update() - the next @len bytes of the message; pieces of any size give the same digest. */
VEXA_API void sha256_update(sha256_ctx *ctx, const uint8_t *message, uint32_t len);

/** sha256_final() - end the message. Its length counts modulo 2^29 bytes: the digests of longer ones are not those of
 *  the standard. */
VEXA_API void sha256_final(sha256_ctx *ctx, uint8_t digest[32]);

/** sha256() - the digest of a message that is there as a whole. */
VEXA_API void sha256(const uint8_t *message, uint32_t len, uint8_t digest[32]);

/* ------------------------------------------------------------------------------------------------------------------
 * Encrypted envelope
 *
 * What the devices of a site send each other: a header of 40 bytes, big-endian on the wire, and a payload that is
 * padded, encrypted with AES-128 in CBC mode and protected by the CRC-32 of zlib over the padded plain text. Log tag
 * "libvexa".
 */

/** The header. gen_payload() leaves it as it goes on the wire, dec_payload() turns it into numbers of the host. The
 *  payload follows at once. */
typedef struct envelope {
    uint32_t magic;       /* 0x22334455 */
    uint8_t version;      /* 2 */
    uint8_t flags;        /* 0x02 encrypted, 0x01 plain */
    uint16_t length;      /* bytes of payload, its padding included */
    uint16_t method;      /* what the receiver dispatches on */
    uint16_t type;        /* the sender's */
    uint8_t iv[16];       /* random; zeros in a plain one */
    uint8_t device_id[6]; /* of the sender */
    uint16_t sequence;    /* 12 bits, on the wire above four zero bits */
    uint32_t crc;         /* 0 in a plain one */
} envelope;

/** State of the discovery protocol in this process. */
struct vexa_protocol_ctrl {
    int32_t initialized;     /* 1 after an init that succeeded */
    int32_t encrypt;         /* 1 then; what vexa_protocol_client_send() encrypts by */
    struct in_addr my_ip;    /* of the bridge interface */
    struct in_addr mcast_ip; /* of the group */
    int32_t sock;            /* -1 when there is none */
    uint8_t device_id[6];    /* the serial number */
    uint8_t key[16];         /* of the site */
    uint16_t rx_seq;         /* sequence number of the last message accepted */
    uint16_t tx_seq;         /* of messages to send, its low 12 bits; the host counts it, the library never does */
};

/**
 * gen_payload() - a new envelope to send: 40 bytes and as many as its length field says.
 * @data: @len bytes; may be NULL when there are none.
 * @encrypt: 1 pads to the next multiple of 16 (a payload that is one grows by 16, an empty one does not) and encrypts.
 *           Any other value leaves the payload plain, with crc and iv 0; the flags say "encrypted" for all but 0.
 * @ctx: device_id, key and tx_seq are used.
 *
 * Returns: the envelope; NULL for a negative @len, one beyond 65535 with its padding, or without memory (logged).
 */
VEXA_API envelope *gen_payload(const void *data, int len, uint16_t method, uint16_t type, int encrypt,
                               const struct vexa_protocol_ctrl *ctx);

/**
 * dec_payload() - check, decrypt and unpad a datagram in place.
 * @len: bytes received.
 * @pkt: the datagram; of any alignment.
 * @ctx: key and rx_seq are used; nothing is stored.
 *
 * Whether the payload could be decrypted is not looked at: one whose length is no multiple of 16 reaches the CRC as it
 * came, and its sender need not know the key. Drop such datagrams first.
 * Returns: 0, and the header's numbers are the host's, its length that of the payload without padding; 1 when it is
 *          rejected, perhaps half converted; 2 when its sequence number is the last one's, unless the method is 3, 5
 *          or 6.
 */
VEXA_API int dec_payload(int len, envelope *pkt, const struct vexa_protocol_ctrl *ctx);

/**
 * generate_anonClientId() - the name of a client in reports without names: 30 lower-case hexadecimal digits.
 * @out: 33 bytes.
 * @str: what is hashed (SHA-256) behind the address.
 *
 * Returns: 0; -EINVAL when @str is empty, with @out untouched.
 */
VEXA_API int generate_anonClientId(char *out, const uint8_t mac[6], const char *str);

/* ------------------------------------------------------------------------------------------------------------------
 * Discovery protocol
 *
 * Envelopes by multicast on UDP port 48000, between the devices of a site. One context per process, used from one
 * thread; what arrives is handled on the caller's libevent loop. Log tag "vexa_protocol".
 *
 * A listener calls vexa_protocol_init(1), vexa_protocol_init_recv(), and vexa_protocol_deinit() at the end. Who only
 * sends now and then calls vexa_protocol_client_init() and vexa_protocol_client_send(). Every init starts with a clear
 * context and releases nothing: call vexa_protocol_deinit() before another one.
 */

struct event_base; /* of libevent */

/** The context. A host writes tx_seq before it sends (receivers drop a message whose number is the last one's) and
 *  leaves the rest alone. */
VEXA_API extern struct vexa_protocol_ctrl vexa_protocol_ctrl;

/** What is called for the messages of a method. A table ends with an entry without callback. */
typedef struct vexa_protocol_handler {
    /** @payload: borrowed for the call; a zero follows the datagram. The envelope's header, in the order of the host,
     *  lies right before it and tells the payload's length. The handler may call anything here, also
     *  vexa_protocol_deinit(); after that, or another init, no further handler is called. */
    void (*callback)(const void *payload);
    uint32_t method;
} vexa_protocol_handler;

/**
 * vexa_protocol_init() - prepare to send and, when @listen is not 0, to receive.
 *
 * Reads:   "serialno" of "/proc/vexahal/system.info" for the device's id; "corvo.key" (32 hexadecimal digits) and
 *          "corvo.mcip" (the group) of "/var/run/vexa_protocol.info"; the address of the bridge in
 *          "/var/run/ipready.br0". Without an address the group is joined on the SIGUSR1 that follows it.
 * @listen: 0 takes the key only and makes no socket; the group may be missing then.
 * Returns: 0; -1 (logged), and then everything is torn down.
 */
VEXA_API int vexa_protocol_init(int listen);

/**
 * vexa_protocol_init_recv() - receive on an event loop.
 * @base: borrowed until vexa_protocol_deinit(). SIGUSR1 comes to the library through it, to look at the address again.
 * @table: borrowed until then, too; NULL for none. Every entry of a message's method is called, in order.
 *
 * Datagrams of more than 512 bytes, and those that do not open, are dropped (logged).
 * Returns: 0.
 */
VEXA_API int vexa_protocol_init_recv(struct event_base *base, const vexa_protocol_handler *table);

/** vexa_protocol_deinit() - leave the group, close the socket, free the events and clear the context. */
VEXA_API void vexa_protocol_deinit(void);

/**
 * vexa_protocol_send() - send one envelope to the group; the arguments are those of gen_payload().
 *
 * Returns: bytes of the datagram; -1 on failure (logged).
 */
VEXA_API int vexa_protocol_send(const void *data, int len, uint16_t method, uint16_t type, int encrypt);

/** vexa_protocol_client_init() - prepare for vexa_protocol_client_send(): like vexa_protocol_init(0), but from
 *  "/tmp/system.cfg", and the group must be there (what is wrong with its text is found out by sending). */
VEXA_API int vexa_protocol_client_init(void);

/** vexa_protocol_client_send() - send one message of type 3 through a socket of its own. That of a listener is closed
 *  before; afterwards there is none. Failures are logged. */
VEXA_API void vexa_protocol_client_send(const void *data, int len, uint16_t method);

/** vexa_protocol_client_event_mesh_halt_send() - tell the group that this device's mesh halts: method 6, the
 *  device's id and the numbers 600 and 4 as 32-bit big-endian. */
VEXA_API void vexa_protocol_client_event_mesh_halt_send(void);

/* ------------------------------------------------------------------------------------------------------------------
 * Framed socket messages
 *
 * On the wire: type and length as they lie in memory, 8 bytes sent on their own, then the payload in pieces of at most
 * 16384 bytes. Descriptors of 1024 and more are refused. Log tag "sk_msg".
 */

typedef struct sk_msg {
    int32_t type; /* the caller's */
    int32_t len;  /* bytes of payload */
    buffer *data; /* the payload, from its first unread byte; what is received is appended */
} sk_msg;

/**
 * sk_msg_send() - send a message through a connected stream socket, without SIGPIPE.
 * @timeout_s: seconds that the peer may take for each step forward.
 *
 * Returns: @len of the record; -1 on failure, when @data holds less, or after the time, with errno ETIMEDOUT (all
 *          logged).
 */
VEXA_API int sk_msg_send(int fd, sk_msg *msg, int timeout_s);

/**
 * sk_msg_recv() - receive a message from a stream socket.
 * @timeout_s: seconds to wait for the header and for each piece.
 *
 * Each piece counts as full: what a short read leaves is appended as zeros, also when the peer has closed. A peer that
 * closed before the header gives an empty message of type 0.
 * Returns: the announced length; -1 on failure, after the time (not logged), on a signal or for a negative length;
 *          pieces that came before are in @data.
 */
VEXA_API int sk_msg_recv(int fd, sk_msg *msg, int timeout_s);

/** sk_msg_sendto() - sk_msg_send() through a datagram socket to @addr, with 3 seconds. */
VEXA_API int sk_msg_sendto(int fd, sk_msg *msg, const struct sockaddr *addr, socklen_t addrlen);

/**
 * sk_msg_recvfrom() - sk_msg_recv() from a datagram socket, with 3 seconds; signals do not end the wait and its end is
 *                     logged.
 * @addr: sender of the last datagram.
 * @addrlen: bytes at @addr; set to what the address takes.
 */
VEXA_API int sk_msg_recvfrom(int fd, sk_msg *msg, struct sockaddr *addr, socklen_t *addrlen);

/* ------------------------------------------------------------------------------------------------------------------
 * Local socket endpoints
 *
 * Datagram sockets bound to files. Log tag "uds".
 */

typedef struct uds_sock {
    int32_t fd;               /* -1 when none */
    struct sockaddr_un local; /* what it is bound to; a path of 108 bytes has no zero behind it */
    struct sockaddr_un peer;  /* what a client is connected to */
} uds_sock;

/**
 * uds_socket_create() - open a server or a client endpoint.
 * @path: of the server, at most 108 bytes. A server removes what stands there; a client binds to a file of its own,
 *        "/var/run/uds_client-<pid>-<random number>".
 * @s: overwritten; uds_sock_close() does nothing to it after a failure.
 *
 * Returns: the descriptor, which is also in @s; -1 on failure (logged), and then no file is left behind.
 */
VEXA_API int uds_socket_create(const char *path, uds_sock *s, int server);

/** uds_sock_open_server() - uds_socket_create() of a server. */
VEXA_API int uds_sock_open_server(const char *path, uds_sock *s);

/** uds_sock_open_client() - uds_socket_create() of a client. */
VEXA_API int uds_sock_open_client(const char *path, uds_sock *s);

/** uds_get_sock() - the descriptor; -1 for NULL. */
VEXA_API int uds_get_sock(const uds_sock *s);

/** uds_sock_close() - remove the endpoint's file and close its descriptor; NULL is allowed. @s keeps both numbers and
 *  must not be closed again. */
VEXA_API void uds_sock_close(uds_sock *s);

/* ------------------------------------------------------------------------------------------------------------------
 * WebRTC sessions
 *
 * Requests to the process that negotiates the remote shell's sessions, which listens at the abstract socket
 * "IPC_WEBRTC_LISTENER". Each goes through a socket of its own, bound to "C_<pid>_SSH", so that a process makes one at
 * a time. Log tag "libvexa_webrtc"; when nobody listens, "socket", "bind" or "connect" and the reason are on standard
 * error, too.
 */

/* What the listener needs to make an offer; a text that fills its field needs no zero. */
typedef struct request_block {
    int32_t unused; /* handed on as it is */
    char turn[400]; /* servers */
    char stun[400];
    char username[200];
    int32_t turn_query;
    char reg_url[400];
    char creds_url[400];
} request_block;

/* Set to zeros before its first use. */
typedef struct webrtc_inform {
    char *offer;
    char *uuid;
    char *reserved; /* not filled here, but released */
    char *turn_creds;
} webrtc_inform;

/**
 * get_next_sdp_offer() - ask for the next offer of a session.
 * @uuid: of the session; 63 characters count.
 * @out: what it held is released; new texts for free_webrtc_inform(). Incomplete replies before the offer fill it, too.
 *
 * Waits at most 60 seconds for each reply.
 * Returns: 0; -ENOENT after the time or when the listener breaks off; -1 for NULL, when the request cannot be sent or
 *          the offer does not come in 5 seconds after its announcement (logged, but for NULL).
 */
VEXA_API int get_next_sdp_offer(const char *uuid, const request_block *req, webrtc_inform *out);

/**
 * set_sdp_answer() - hand the answer to an offer back; waits at most 5 seconds.
 * @out_uuid: set to a new text, for free(), when the listener accepts the answer; untouched otherwise.
 *
 * Returns: 0 once the request is sent, whatever becomes of it; -1 for NULL or on failure (logged, but for NULL).
 */
VEXA_API int set_sdp_answer(const char *uuid, const char *answer, char **out_uuid);

/**
 * get_all_sdp_sessions() - list the open sessions; waits at most 3 seconds.
 * @out548: 548 bytes, untouched when the result is not positive: the count as a 32-bit number, then the list in the
 *          listener's own layout.
 *
 * Returns: sessions, as the listener counts them: more than the list can hold is possible and to be bounded by the
 *          caller; 0 also after the time or for a refusal; -1 on failure (logged) or for NULL.
 */
VEXA_API int get_all_sdp_sessions(void *out548);

/** close_sdp_session() - ask for a session's end. Returns 0 once that is sent; -1 for NULL or on failure (logged). */
VEXA_API int close_sdp_session(const char *uuid);

/** sdp_offer_recv() - receive a framed message in 5 seconds as the offer of @out, whose earlier one is released.
 * Returns 0; -1 on failure (logged), with the earlier one in place, or for NULL. */
VEXA_API int sdp_offer_recv(int fd, webrtc_inform *out);

/** sdp_answer_send() - send a framed message of type 1, with 5 seconds. Returns 0, also when sending fails (logged); -1
 *  without memory (logged) or for NULL. */
VEXA_API int sdp_answer_send(int fd, const char *answer);

/** free_webrtc_inform() - release the texts and set them to NULL; NULL is allowed. */
VEXA_API void free_webrtc_inform(webrtc_inform *p);

/* ------------------------------------------------------------------------------------------------------------------
 * HTTP client
 *
 * One request per call, over libcurl: redirects are followed, HTTP and HTTPS only; the peer's certificate must be good
 * by libcurl's default store and for the host's name; a transfer takes 5 seconds at most. Results are those of libcurl
 * (CURLcode): 0 once an answer came, whatever its status. Each call has a handle of its own; libcurl's global
 * initialisation is the process's. Log tag "curl_simple"; failed requests are logged as debug lines.
 */

struct curl_slist; /* of libcurl: a list of header lines */

/** Resolve the host's name over HTTPS, by curl_simple_doh_providers. */
#define VEXA_HTTP_DOH 0x1u
/** If none of them resolves it, ask the system's resolver; without VEXA_HTTP_DOH it means nothing. */
#define VEXA_HTTP_DOH_FALLBACK 0x2u

/** What an answer brought. */
typedef struct curl_simple_response {
    long code;       /* HTTP status; 0 when there was none */
    buffer *body;    /* of the answer, appended */
    size_t max_size; /* bytes that the body may have */
    size_t received; /* bytes that came, those that found no place included; more than the body has when it was cut */
} curl_simple_response;

/** "GET", "POST" and "PUT". */
VEXA_API extern const char *const curl_simple_method_str[3];

/** URLs of the resolvers, in the order in which they are asked, and a NULL. They are a setting of the build. */
VEXA_API extern const char *const curl_simple_doh_providers[3];

/** curl_simple_response_init() - new response for curl_simple_response_free(); NULL without memory (logged). */
VEXA_API curl_simple_response *curl_simple_response_init(size_t max_size);

/** curl_simple_response_free() - release a response with its body; NULL is allowed. */
VEXA_API void curl_simple_response_free(curl_simple_response *resp);

/**
 * curl_simple_get() - send a GET.
 * @flags: VEXA_HTTP_DOH and VEXA_HTTP_DOH_FALLBACK, or 0.
 * @headers: lines to send, which stay the caller's; NULL for none. Authorization and cookies go to the host of @address
 *           only, not to one that it redirects to.
 * @resp: filled; its status also when the transfer failed. NULL leaves the body to libcurl, which writes it to standard
 *        output.
 *
 * Sends:   the method also to where it is redirected.
 * Returns: a CURLcode; with VEXA_HTTP_DOH the one of the last resolver tried: the next one is asked only after
 *          CURLE_COULDNT_RESOLVE_HOST (6).
 */
VEXA_API int curl_simple_get(const char *address, uint32_t flags, const struct curl_slist *headers,
                             curl_simple_response *resp);

/** curl_simple_post() - curl_simple_get() with POST and a body of @body_len bytes; without one when that is 0 or @body
 *  is NULL. */
VEXA_API int curl_simple_post(const char *address, uint32_t flags, const struct curl_slist *headers, const void *body,
                              size_t body_len, curl_simple_response *resp);

/** curl_simple_put() - curl_simple_post() with PUT. */
VEXA_API int curl_simple_put(const char *address, uint32_t flags, const struct curl_slist *headers, const void *body,
                             size_t body_len, curl_simple_response *resp);

/**
 * curl_simple_post_json() - curl_simple_post() of a JSON object in its compact form, with the fitting Content-Type.
 * @json: borrowed; NULL sends no body.
 *
 * Returns: as curl_simple_get(), and CURLE_OUT_OF_MEMORY (27) when @json is neither object nor array, or without memory
 *          (logged).
 */
VEXA_API int curl_simple_post_json(const char *address, uint32_t flags, const json_t *json, curl_simple_response *resp);

/** curl_simple_put_json() - curl_simple_post_json() with PUT. */
VEXA_API int curl_simple_put_json(const char *address, uint32_t flags, const json_t *json, curl_simple_response *resp);

/* ------------------------------------------------------------------------------------------------------------------
 * Crash reports
 *
 * What went wrong on the device, as JSON objects for the crash-report service. Commands run through the shell, with the
 * host's PATH. Log tag "crash".
 *
 * Isolation logs are gzip-compressed tar files that another component leaves in "/etc/persistent/isolation_logs/". The
 * library keeps one JSON object for each below "meta/" there, under the log's name: {filename, sent_to_analytics,
 * send_attempts, payload, sent_to_net}. Once a local consumer has finished a log, an empty file of its name in
 * "/etc/persistent/isolation_logs_sent/" tells that it is done with. Only regular files count, and links do not. Every
 * pass makes the object of a new log and runs the action "save-config" when persistent storage changed. Several
 * processes may pass at once: each locks the object it works on, and tries ten times, a second apart.
 */

/** has_oops() - 1 when the kernel holds a dump of its last crash, as "oopsdump -e" tells; asked once per process. */
VEXA_API int has_oops(void);

/**
 * oops_clear() - save the kernel's dump to "/var/run/last-crashlog.txt" and drop it; has_oops() is 0 from then on.
 *
 * Returns: the wait status of "oopsdump -c"; -1 when that cannot be known.
 */
VEXA_API int oops_clear(void);

/** is_dir_in_persistent() - 1 when the path begins with "/etc/persistent", whatever follows. */
VEXA_API int is_dir_in_persistent(const char *path);

/**
 * save_crash_payload() - keep a report, readable by its owner only.
 * @payload: borrowed; anything but an object or an array is logged as invalid.
 *
 * Writes:  "/var/run/report_payload.txt", indented, unless the text is longer than 512000 bytes. A link there is not
 *          followed.
 * Errors:  logged.
 */
VEXA_API void save_crash_payload(json_t *payload);

/** save_crash_payload_cmd() - the same for a command line that failed, in "/var/run/report_payload_cmd.txt". */
VEXA_API void save_crash_payload_cmd(const char *cmd);

/**
 * json_object_capture_popen() - set a member to the output of a command, at most 1048575 bytes of it.
 * @cmd: run by the shell; NULL does nothing.
 *
 * Bytes that are no UTF-8 become U+FFFD. Whether the command succeeds is only logged.
 * Returns: 0; -1 when it cannot be run (logged; the member is "") or the member cannot be set.
 */
VEXA_API int json_object_capture_popen(json_t *obj, const char *key, const char *cmd);

/**
 * send_kernel_crash() - report the kernel's last crash, unless "/var/run/last-crashlog.sent" tells that it was.
 *
 * Gate:    every report needs "/var/run/ntp.ready", "/var/run/ipready.br0", and no 0 in
 *          "/var/run/system.analytics.mode".
 * Sends:   "<service>/v1/kernel-crash": the device, the crash log and the configuration, both through the filters of
 *          "syswrapper.sh". What was posted is saved by save_crash_payload().
 * Returns: 0 when it is or was reported; -1 when has_oops() knows none; -ENOENT while the gate is closed; -ESRCH for a
 *          service whose URL is too long; -EINTR without memory; -EIO when it was not accepted (all but the gate
 *          logged).
 */
VEXA_API int send_kernel_crash(void);

/**
 * send_crash_binary_data() - report the death of a program, and upload its dump if the service gives an address.
 * @name: of the program, or what kind of RAM dump; any bytes.
 * @pid: its last lines of "/var/log/messages" are sent along.
 * @data, @data_len: the dump; NULL or a length of 0 or less for none. It is uploaded when
 *                   "/var/run/system.analytics.coredump" holds 1.
 * @dump_kind: 0 core dump, 1 crash of an application, 2 killed for want of memory, 3 RAM dump (the numbers are not
 *             sent, the configuration is), others are unknown.
 *
 * Returns: 0, also when the dump may not go out or the service wants none (logged); -1 while the gate is closed, or
 *          when report or dump were not accepted (logged).
 */
VEXA_API int send_crash_binary_data(const char *name, int pid, int signal, int number_of_crashes, int process_uptime,
                                    const void *data, int data_len, int dump_kind);

/** send_ram_dump() - send_crash_binary_data() of kind 3. */
VEXA_API int send_ram_dump(const char *dump_type, const void *data, int data_len);

/**
 * check_vwire_disconnect_logs() - a pass over the isolation logs.
 * @uplink_model: of the device above, for logs seen for the first time; NULL is "unknown".
 * @send: non-zero posts each log that was not posted yet, while the gate is open. A log is given up after five
 *        attempts.
 *
 * Returns: 0, however single logs fared (logged); -1 when a directory cannot be made (logged).
 */
VEXA_API int check_vwire_disconnect_logs(const char *uplink_model, int send);

/** has_crash_logs() - 1 when the consumer has not finished every isolation log. */
VEXA_API int has_crash_logs(void);

/**
 * get_next_crash_log() - the first isolation log that the consumer has not finished.
 *
 * Returns: its object with one more member, "file_data": the log in base64, "" when it cannot be read whole. NULL when
 *          there is none or it cannot be opened (logged).
 */
VEXA_API json_t *get_next_crash_log(void);

/**
 * mark_crash_log_finished() - the consumer has what it wants of a log; it is never visited again.
 * @filename: the member "filename" of get_next_crash_log(), or the file's own name; NULL is logged for each log.
 *
 * Returns: 1; 0 for an unknown name or on failure (logged).
 */
VEXA_API int mark_crash_log_finished(const char *filename);

/* ------------------------------------------------------------------------------------------------------------------
 * Traces
 *
 * Telemetry events as JSON objects: {namespace, type, timestamp, source, meta, payload}. A setter steals its value and
 * gives 0, or -1 when the trace is no object or does not take it; a value of the wrong type is logged. Log tag "trace",
 * most of it for debugging.
 */

/** trace_object() - new empty trace. */
VEXA_API json_t *trace_object(void);

/** trace_array() - new empty array of traces. */
VEXA_API json_t *trace_array(void);

/** trace_array_append_new() - append a trace, which is stolen. Returns 0 or -1. */
VEXA_API int trace_array_append_new(json_t *array, json_t *trace);

/** trace_decref() - release one reference; NULL is allowed. */
VEXA_API void trace_decref(json_t *json);

/** trace_object_set_payload_new() - an object, which goes out as text: {contentType: "application/json", data}. */
VEXA_API int trace_object_set_payload_new(json_t *trace, json_t *payload);

/** trace_object_set_timestamp_new() - an integer: milliseconds since 1970. */
VEXA_API int trace_object_set_timestamp_new(json_t *trace, json_t *value);

/** trace_object_set_type_new() - a string. */
VEXA_API int trace_object_set_type_new(json_t *trace, json_t *value);

/** trace_object_set_namespace_new() - a string. */
VEXA_API int trace_object_set_namespace_new(json_t *trace, json_t *value);

/** trace_object_set_source_new() - an object whose members are strings. */
VEXA_API int trace_object_set_source_new(json_t *trace, json_t *value);

/** trace_object_set_meta_new() - an object whose members are strings. */
VEXA_API int trace_object_set_meta_new(json_t *trace, json_t *value);

/**
 * send_traces() - send one envelope.
 * @array: of traces; borrowed.
 * @meta: what the envelope says, an object {timestamp, type, meta, source}, or NULL; borrowed. What is missing is now,
 *        "event", and two new objects. The device's keys are added to @meta's own member "meta".
 *
 * Sends:   PUT "<service>/traces". After the fifth failed transfer in a row the process waits for a second before the
 *          next one, then twice as long each time; past 24 hours it sends no more. Any answer ends the wait.
 * Returns: 0 accepted (202); 1 another answer, or none; 2 not yet; 3 never again; 4 the device's owner allows no
 *          reports; -1 when @array is none (logged) or on a failure here (logged). 2, 3 and 4 come first.
 */
VEXA_API int send_traces(json_t *array, json_t *meta);

/** send_trace_with_meta() - send_traces() of one trace, which is borrowed. */
VEXA_API int send_trace_with_meta(json_t *trace, json_t *meta);

/** send_trace_simple() - send_traces() of a new trace; the payload is stolen. -1 without memory. */
VEXA_API int send_trace_simple(const char *namespace_name, const char *type, json_t *payload);

/** dump_refcount() - log the reference count of a value and of all that it holds, 64 levels deep; a value that holds
 *  itself is not followed again. */
VEXA_API void dump_refcount(json_t *json);

/* ------------------------------------------------------------------------------------------------------------------
 * Wireless interfaces and stations
 *
 * What the Wi-Fi driver says. A virtual access point (VAP) is an interface of a radio. Each call asks through a socket
 * of its own and keeps nothing, so that calls may run beside each other. Fields whose meaning is not said are the
 * driver's, handed on unchanged. Log tags "wireless" and "libvexa".
 */

/** An average that is gathered: vexa_avg_increment() and vexa_avg_compute(). */
typedef struct vexa_avg {
    int64_t sum;
    int64_t count;
    int32_t average; /* sum / count, rounded; the default of vexa_avg_compute() while count is not positive */
} vexa_avg;

/** Connections that are forwarded for a station, in one direction. Latencies in ms. */
typedef struct vexa_tcp_stats {
    uint64_t goodbytes; /* bytes that were no repetition */
    uint16_t stalls;
    uint16_t retries;
    uint32_t lat_max;
    uint32_t lat_min; /* 0xFFFFFFFF without a sample */
    vexa_avg lat;     /* -1 without a sample */
} vexa_tcp_stats;

/** How long frames wait from their queue to their acknowledgement, in microseconds. */
typedef struct vexa_tx_latency {
    uint64_t total;
    uint64_t total_count;
    uint32_t min;
    uint32_t max;
    int32_t avg; /* rounded to the nearest; -1 without a sample, or when the driver did not answer */
} vexa_tx_latency;

/** Factors of a station's satisfaction; factor i is the bit 1 << i of a mask. */
#define VEXA_FACTORS 16
/** Samples that a moving score looks back on. */
#define VEXA_SCORE_HISTORY 4

/** One of a station's two scores: from 0 to 100, and -1 for what is not scored. */
typedef struct vexa_score {
    int32_t score_now;
    int32_t score_real;     /* moving score */
    uint32_t reason_now;    /* bit of the worst factor; 0 while all are perfect */
    uint32_t reason;        /* the same for the moving score */
    uint32_t anomalies_now; /* bits of the factors below 80 */
    uint32_t anomalies;
    int32_t subscores_now[VEXA_FACTORS];
    int32_t history[VEXA_SCORE_HISTORY][VEXA_FACTORS]; /* earlier subscores_now, filled by the host */
} vexa_score;

/** What vexa_sta_ht_get_stats() fills in, as the tracking device writes it. */
typedef struct vexa_sta_tracking {
    uint32_t radio_mode;     /* phy mode of the radio; 17, 18 and 23 take part in all of the scoring */
    uint32_t ip_obtained;    /* flag: the station has an address */
    uint32_t arp_answered;   /* flag: the gateway's hardware address was found */
    uint32_t dns_timeouts;   /* queries without an answer */
    uint32_t dns_latency;    /* ms; 0xFFFFFFFF without a query */
    uint32_t icmp_rtt;       /* ms */
    uint32_t dhcp_requests;  /* messages of the station */
    int32_t dhcp_difference; /* its messages less the answers */
    int32_t dhcp_retries;    /* how many of its messages repeat an earlier one */
    uint32_t dhcp_offers;    /* messages of servers */
    uint32_t dhcp_acks;
    uint32_t disconnects;
} vexa_sta_tracking;

/**
 * A station. Rates are in kbit/s, times in seconds; a field that ends in "_mov" is of the last minutes, the others
 * count from the association on.
 */
typedef struct stainfo {
    vexa_list links;
    uint32_t valid; /* 0 in a placeholder, which has nothing but @mac */
    uint8_t mac[6];
    uint8_t serialno[6]; /* of a peer that is a device of the family */
    uint32_t tx_rate;
    uint32_t rx_rate;
    int8_t tx_mcs;
    uint8_t rssi; /* dB above @noise */
    uint16_t ccq;
    uint32_t driver_word;
    uint32_t uptime;
    uint32_t idletime;
    uint16_t state;    /* frequency of its channel in MHz */
    int16_t noise;     /* dBm */
    uint16_t tx_power; /* dBm */
    uint32_t auth_time;
    uint32_t dhcpstart_time;
    uint32_t dhcpend_time;
    uint32_t ip;       /* IPv4, network order */
    char hostname[32]; /* no zero when it fills the field */
    uint16_t flags;    /* low half of the capability word */
    uint16_t associd;
    uint16_t driver_word2;
    vexa_tcp_stats rx_tcp_stats;
    vexa_tcp_stats tx_tcp_stats;
    /* from here to tx_latency: zeros, and -1 as average latency, when the driver has no counters for the station */
    uint64_t rx_packets;
    uint64_t rx_bytes;
    uint32_t rx_counter;
    uint32_t rx_mcast;
    uint32_t rx_retries;
    uint32_t tx_packets; /* data, at the first try */
    uint64_t tx_bytes;
    uint32_t tx_counter;
    uint32_t tx_retry_burst_count;
    uint32_t tx_rts_retries;
    uint64_t tx_retries;
    uint64_t wifi_tx_attempts; /* tx_retries + tx_packets */
    uint64_t tx_data_mpdu_bytes;
    uint64_t tx_total;
    uint64_t wifi_tx_success;
    uint64_t wifi_tx_dropped;
    uint64_t wifi_tx_attempts_mov;
    uint64_t tx_retries_mov;
    uint64_t wifi_tx_dropped_mov;
    uint64_t tx_total_mov;
    uint64_t rx_bytes_mov;
    uint64_t tx_bytes_mov;
    uint32_t tx_rate_mov;
    uint32_t rx_rate_mov;
    vexa_tx_latency tx_latency;
    uint32_t tx_eff_pct; /* moving attempts that were no retries, in percent; 100 without attempts */
    uint32_t is_11b;     /* capabilities, 0 or 1 */
    uint32_t is_11a;
    uint32_t is_11n;
    uint32_t is_11ac;
    uint32_t is_11ax;
    uint32_t is_11r;
    uint8_t identity[64]; /* of 802.1X, identity_len bytes */
    uint32_t identity_len;
    uint16_t vlan_id;
    int32_t skip_satisfaction;   /* set by the host: the station is left out of the scores of others */
    vexa_score satisfaction;     /* calc_sta_satisfaction() and calc_sta_satisfaction_mov() */
    vexa_score satisfaction_exp; /* the experimental set of factors */
    int32_t bw_max_supp;         /* MHz */
    char keyid[32];              /* this and what follows is the host's; 0 from here */
    uint8_t nss;
    uint8_t chwidth;
    vexa_sta_tracking tracking; /* vexa_sta_ht_get_stats() */
} stainfo;

/** A network that a scan found. */
typedef struct scanlist {
    vexa_list links;
    uint8_t bssid[6];
    char ssid[32];            /* at most 31 characters of it */
    uint32_t rssi;            /* dB above the noise */
    uint32_t noise;           /* dBm, in eight bits: 161 is -95 */
    uint32_t flags;           /* the driver's */
    uint32_t frequency;       /* MHz */
    uint32_t beacon_interval; /* units of 1.024 ms */
    uint32_t age;             /* ms since it was heard */
    uint32_t privacy;         /* 16 when the network wants a key, else 0 */
    uint32_t width;           /* MHz */
    uint32_t max_rate;        /* kbit/s */
    uint32_t channel;
    uint32_t ibss;    /* 2 for a network without access point, else 0 */
    uint32_t vexa_ie; /* 1 when a device of the family sends here, and only then the rest is set */
    uint16_t vexa_ie_value;
    uint8_t vexa_ie_mac[6];
    uint32_t vexa_ie_flags[7];
    char vexa_ie_name[64]; /* no zero when it fills the field */
    uint32_t vexa_ie_flags2[2];
    uint8_t vexa_ie_data[254];
    uint8_t vexa_ie_blob1[36];
    uint8_t vexa_ie_blob2[36];
} scanlist;

/** An interface that is up. */
typedef struct vap_entry {
    uint32_t in_use; /* 1 */
    uint32_t family; /* 0 the main radio, 1 the second */
    int32_t ifindex;
    char ifname[16];
    char parent[16]; /* the first VAP of the radio */
} vap_entry;

/** The state of a radio as one of its VAPs shows it. */
typedef struct wireless_info {
    char essid[40];
    uint8_t bssid[6];
    uint8_t mode; /* 1 station, 2 access point */
    uint8_t channel;
    uint32_t frequency; /* MHz */
    uint32_t txpower;   /* dBm */
    uint8_t ieee_mode;  /* 6 while waiting for the end of a radar check, else 5 */
    uint32_t max_rate;  /* kbit/s */
    uint8_t chains;
    uint8_t width;   /* MHz */
    uint8_t dfswait; /* non-zero while waiting */
} wireless_info;

/** What a radio counts since it came up; shares are percent of its recent time. */
typedef struct athstat {
    uint32_t rx_packets;
    uint32_t tx_packets;
    uint32_t rx_bytes;
    uint32_t tx_bytes;
    uint32_t rx_errors;
    uint32_t tx_errors;
    uint32_t busy; /* share with anything on the air */
    uint32_t busy_rx;
    uint32_t busy_tx;
    uint32_t interference; /* share of other networks and noise */
    int32_t noise;         /* dBm */
    uint32_t tx_retries;
    uint32_t tx_dropped;
    uint32_t beacons;
} athstat;

/** A capacity that enum_vaps() can fill. */
#define VEXA_MAX_VAPS 34

/**
 * enum_vaps() - the interfaces that are up, radio by radio: the uplink ("apcli0", "apclii0") when its file
 *               "/var/run/vapusage.<name>" is there, then "ra0" to "ra15" and "rai0" to "rai15".
 * @entries: room for VEXA_MAX_VAPS, whatever @capacity says.
 * @capacity: how many entries are set to zeros first.
 *
 * Returns: how many were filled in, also beyond @capacity; 0 for NULL or no capacity.
 */
VEXA_API int enum_vaps(vap_entry *entries, size_t capacity);

/** vexa_if_is_up() - whether the interface is in "/sys/class/net" and its flag IFF_UP is set. */
VEXA_API int vexa_if_is_up(const char *ifname);

/** vexa_get_ifindex() - index of an interface from "/sys/class/net", of which three digits are read: 1000 and more are
 *  cut. 0 when there is none. */
VEXA_API int vexa_get_ifindex(const char *ifname);

/** is_wireless_uplink_or_downlink_vap() - whether "/var/run/vapusage.<name>" says "uplink" or "downlink". The path is
 *  cut after 25 characters. */
VEXA_API int is_wireless_uplink_or_downlink_vap(const char *vap);

/**
 * get_stalist() - the stations of a VAP.
 *
 * Sends:   the driver's list request for an uplink or downlink VAP; else vexa_sta_ht_get_stas(). Then the requests of
 *          get_stainfo() for each station, through one socket.
 * Returns: a new list of stainfo for free_stalist(), in the order of the answer, empty without stations; NULL on
 *          failure (logged, but for a refusal of the driver's). A station that the driver does not know is left out of
 *          the driver's list; of the tracking device's it is a placeholder with valid 0.
 * Errors:  without memory for a placeholder the process ends by a segmentation fault, after a line.
 */
VEXA_API vexa_list *get_stalist(const char *vap);

/** free_stalist() - release a list and its stations; NULL is allowed. */
VEXA_API void free_stalist(vexa_list *stations);

/**
 * get_stainfo() - what the driver knows about a station.
 * @mac: 6 bytes.
 *
 * Returns: a new record with zeros where nothing is said; NULL when the driver does not answer (a debug line) or
 *          memory ends. Without counters (a debug line) it is returned all the same.
 */
VEXA_API stainfo *get_stainfo(const char *vap, const uint8_t *mac);

/** get_sta_associd() - association id of the station with that address (6 bytes); 0 on failure. */
VEXA_API uint16_t get_sta_associd(const char *vap, const uint8_t *mac);

/** vexa_sta_info_fill_tcp_stats() - unpack a block of the driver's, 28 bytes. Returns the average latency. */
VEXA_API int32_t vexa_sta_info_fill_tcp_stats(vexa_tcp_stats *stats, const void *driver28);

/** fill_wireless_info() - the state of a VAP and its radio. Fields that the driver does not answer for stay, but for
 *  @essid, which is then empty (a debug line), and @dfswait and @ieee_mode. Returns 0. */
VEXA_API int fill_wireless_info(const char *vap, wireless_info *info);

/** fill_dfswait() - one byte: non-zero while the radio waits out a radar check; 0 without an answer. @sock is any open
 *  socket. */
VEXA_API void fill_dfswait(int sock, const char *vap, uint8_t *dfswait);

/** get_athstat() - counters of the radio of an interface; @out is untouched on failure. */
VEXA_API void get_athstat(const char *ifname, athstat *out);

/** get_antenna_gain() - dBi; 0 on failure. */
VEXA_API uint32_t get_antenna_gain(const char *ifname);

/** get_if_essid() - the network name, terminated within @size; empty on failure (a debug line). Returns 0 or -1. */
VEXA_API int get_if_essid(const char *ifname, char *buf, uint16_t size);

/** set80211priv() - a request of the driver's own with @length bytes at @data. Returns 0; -1 with errno. */
VEXA_API int set80211priv(int sock, const char *ifname, int request, int unused, uint16_t flags, void *data,
                          uint16_t length);

/** get80211priv() - the same for an answer. Returns the length that the driver says, which may be more than @length; -1
 *  with errno. */
VEXA_API int get80211priv(int sock, const char *ifname, int request, int unused, uint16_t flags, void *data,
                          uint16_t length);

/** vexa_scan_request() - tell the driver to scan for a network; NULL for all. 127 characters in all are sent. Returns
 *  0; -1 on failure (logged). */
VEXA_API int vexa_scan_request(const char *ifname, const char *text);

/** vexa_set_bpdu_filter() - tell the driver to keep bridge protocol frames. Returns 0; -1 on failure (logged). */
VEXA_API int vexa_set_bpdu_filter(const char *ifname, int value);

/** vexa_set_net_annid() - returns @id; there is nothing to set on this platform. */
VEXA_API int vexa_set_net_annid(int id);

/** Takes a scan entry of the driver's, or an information element, of @length bytes in all. The result does not
 *  matter. */
typedef int (*vexa_scan_callback)(const uint8_t *data, size_t length, void *context);

/**
 * parse_scan_results() - call for each network that the last scan found.
 *
 * The walk ends before an entry whose length cannot be.
 * Returns: 0; -1 when the driver has no answer of at least one entry's header, or an argument is NULL.
 */
VEXA_API int parse_scan_results(const char *ifname, vexa_scan_callback callback, void *context);

/** parse_scan_result_ies() - call for each information element of @count bytes that is there as a whole. @entry is not
 *  read. Returns 0. */
VEXA_API int parse_scan_result_ies(const void *entry, const uint8_t *element, int count, vexa_scan_callback callback,
                                   void *context);

/** get_scanlist() - what the last scan found. Returns a new list of scanlist for free_scanlist(), empty when the driver
 *  does not answer; NULL without memory for its head. */
VEXA_API vexa_list *get_scanlist(const char *ifname);

/** free_scanlist() - release a list and its entries; NULL is allowed. */
VEXA_API void free_scanlist(vexa_list *networks);

/* ------------------------------------------------------------------------------------------------------------------
 * Frequencies, channels and power
 *
 * Arithmetic on frequencies in MHz, channel numbers and the driver's phy modes: numbers from 0 to 32 that combine
 * standard and width. Nothing is read but where it is said.
 */

/** Bits of get_wifi_cap() that depend on the device; the others stand for what every device can do. */
#define VEXA_WIFI_CAP_DFS_MASTER (UINT32_C(1) << 4)       /* may choose a radar channel by itself */
#define VEXA_WIFI_CAP_AIRTIME_FAIRNESS (UINT32_C(1) << 7) /* shares time, not frames */
#define VEXA_WIFI_CAP_ZERO_WAIT_DFS (UINT32_C(1) << 25)   /* listens for radar beside its service */
#define VEXA_WIFI_CAP_EVEN_CHAINS (UINT32_C(1) << 26)     /* two or four chains on the first radio */
#define VEXA_WIFI_CAP_SPECTRUM_SCAN (UINT32_C(1) << 28)   /* a chain for spectrum scans */

/** get_center_freq() - centre, in MHz, of the channel that is occupied around the primary frequency @freq; the first
 *  segment of 80+80 MHz. 0xFFFFFFFF for an unknown phy mode. */
VEXA_API uint32_t get_center_freq(uint32_t freq, uint16_t channel, int8_t phy_mode);

/** get_bw() - width in MHz: 20, 40, 80, or 160 for 80+80 MHz, too. -1 for an unknown phy mode (logged). */
VEXA_API int get_bw(int8_t phy_mode);

/** qx_freq_to_channel() - channel number of a frequency; 0 where there is none. Below 2407 the result is of no use. */
VEXA_API uint32_t qx_freq_to_channel(uint32_t freq);

/** ieee80211_mhz2ieee() - channel number by the driver's older rules. */
VEXA_API uint32_t ieee80211_mhz2ieee(uint32_t freq);

/** qx_freq_to_band() - 0 unknown, 1 2.4 GHz, 2 4.9 GHz, 3 5 GHz, 4 6 GHz, 5 60 GHz. */
VEXA_API int qx_freq_to_band(uint32_t freq);

/** get_band() - the configuration's name of a band, static: "ng", "na", "6e" or "unknown". Its edges are not those of
 *  qx_freq_to_band(). */
VEXA_API const char *get_band(int32_t freq);

/**
 * get_wifi_cap() - what the device's radios can do, as VEXA_WIFI_CAP_... and bits for what every device can.
 *
 * Reads:   the record of board_identify(), and get_wireless_uplink_state(): over a wireless uplink the device follows
 *          the channel of another.
 */
VEXA_API uint32_t get_wifi_cap(void);

/** vexa_convert_to_dbm() - a level byte and a number of 3 dB steps as the driver means them, in dBm. */
VEXA_API uint32_t vexa_convert_to_dbm(uint8_t level, uint8_t steps);

/** qx_regulatory_get_max_eirp() - limits in dBm: radiated, and conducted. -1: this platform has no database. */
VEXA_API int qx_regulatory_get_max_eirp(int country, int band, int channel, int width, int *eirp, int *conducted);

/**
 * qx_regulatory_get_target_power_mbm() - transmit power for a mode, within the regulatory limit.
 * @custom: dBm as text, for the mode "custom".
 * @mode: "low", "medium", "custom"; anything else is the limit.
 * @low_mbm, @gain_mbm: lowest power and antenna gain, in 1/100 dBm.
 * @mbm: 1/100 dBm; untouched on failure.
 *
 * Returns: 0; -1 without limits (logged as an error), which is always on this platform.
 */
VEXA_API int qx_regulatory_get_target_power_mbm(const char *custom, const char *mode, int country, int band,
                                                int channel, int width, int low_mbm, int gain_mbm, int *mbm);

/** qx_regulatory_get_target_power() - the same in dBm, cut to whole ones. */
VEXA_API int qx_regulatory_get_target_power(const char *custom, const char *mode, int country, int band, int channel,
                                            int width, int low_dbm, int gain_dbm, int *dbm);

/* This platform has no nl80211 service. The entry points answer so: -1 or NULL, the first and the third with an error
 * line. */
typedef int (*qx_nl80211_callback)(const void *message, void *context);
VEXA_API int qx_nl80211_service_init(void);
VEXA_API void qx_nl80211_service_deinit(void);
VEXA_API int qx_nl80211_register_command_callback(int command, qx_nl80211_callback callback, void *context);
VEXA_API void qx_nl80211_deregister_command_callback(int command);
VEXA_API void *qx_nl80211_create_message(int command, int flags);
VEXA_API int qx_nl80211_send_recv(void *message, qx_nl80211_callback callback, void *context);
VEXA_API int qx_nl80211_interface_info(const char *ifname, void *info);
VEXA_API int qx_nl80211_interface_power(const char *ifname, int *mbm);
VEXA_API const char *qx_nl80211_parent_interface(const char *ifname);
VEXA_API int qx_nl80211_interface_set_power(const char *ifname, int mbm);

/* ------------------------------------------------------------------------------------------------------------------
 * Client satisfaction
 *
 * Arithmetic on records; nothing is read and nothing allocated. Log tag "satisfaction".
 */

/** What a VAP is measured by. The host fills in a VAP's values; -1 is no value. */
typedef enum vexa_metric {
    VEXA_METRIC_SIGNAL,      /* mean of the stations' rssi, dB above the noise */
    VEXA_METRIC_TX_RATE,     /* mean transmit rate, kbit/s */
    VEXA_METRIC_RETRIES,     /* retries per hundred attempts */
    VEXA_METRIC_DROPS,       /* frames given up, per hundred attempts */
    VEXA_METRIC_TX_LATENCY,  /* mean transmit latency, microseconds */
    VEXA_METRIC_TCP_LATENCY, /* mean latency of connections, ms */
    VEXA_METRICS
} vexa_metric;

typedef struct vexa_vap {
    vexa_list links; /* in vexa_ap.vaps */
    char name[16];
    char radio[16];                   /* name of its radio, filled with zeros */
    vexa_list *stations;              /* of stainfo, as from get_stalist(); NULL for none */
    uint32_t station_count;           /* of @stations, set by the host */
    int32_t score;                    /* calc_vap_satisfaction() */
    int32_t score_mov;                /* this and both counts: calc_satisfaction_mov() */
    uint32_t anomalies[VEXA_FACTORS]; /* stations with this anomaly */
    uint32_t reasons[VEXA_FACTORS];   /* stations with this reason */
    int32_t metrics[VEXA_METRICS];    /* set by the host */
} vexa_vap;

typedef struct vexa_radio {
    vexa_list links; /* in vexa_ap.radios */
    char name[16];   /* filled with zeros */
    int32_t score;
    int32_t score_mov;
} vexa_radio;

typedef struct vexa_ap {
    vexa_list vaps;         /* of vexa_vap */
    vexa_list radios;       /* of vexa_radio */
    uint32_t station_count; /* this and what follows @score: calc_satisfaction_mov() */
    int32_t score;
    int32_t score_mov;
    vexa_avg metrics[VEXA_METRICS]; /* means of the VAPs' metrics, weighted by their stations */
} vexa_ap;

/** Names of the factors, by index: of an anomaly ("weak_signal") and of a reason ("signal"). */
VEXA_API extern const char *const anomalies_bar_chart_keys[VEXA_FACTORS];
VEXA_API extern const char *const reasons_bar_chart_keys[VEXA_FACTORS];

typedef struct vexa_xretry_penalty {
    uint32_t radio_mode;
    float threshold; /* drops per hundred attempts */
} vexa_xretry_penalty;

/** From which share of drops on a station loses points, by the mode of its radio; the first row of a mode holds. The
 *  host may write other values. */
VEXA_API extern vexa_xretry_penalty sat_xretry_penalty_thrs[2];

typedef struct vexa_xretry_segment {
    uint32_t score_at_upper;
    uint32_t score_at_lower;
    uint32_t lower; /* drops per hundred attempts */
    uint32_t upper;
} vexa_xretry_segment;

typedef struct vexa_xretry_range {
    uint32_t radio_mode;
    vexa_xretry_segment segments[5];
} vexa_xretry_range;

/** The curve of drops of the experimental set, likewise. Its bounds are 0 until the host writes them, and until then
 *  any drop scores 0 there. */
VEXA_API extern vexa_xretry_range sat_xretry_metric_ranges[2];

/**
 * calc_sta_satisfaction() - both scores of a station: what ends in "_now".
 * @sta: from get_stalist(), its @tracking filled in by vexa_sta_ht_get_stats().
 *
 * The score is the lowest of the factors', the reason that factor: of equal ones the first in the order in which they
 * are looked at. reason_now and anomalies_now are only added to: they are 0 in a fresh record.
 * Errors:  more retries or drops than attempts score 0 (logged as a warning).
 * Returns: nothing of use.
 */
VEXA_API int calc_sta_satisfaction(stainfo *sta);

/**
 * calc_sta_satisfaction_mov() - the moving score: score_real, reason and anomalies.
 * @score: its subscores_now are averaged with its @history, factor by factor; -1 is no value.
 *
 * The host keeps the history: of each station, found again by its address, the subscores_now of its last four cycles,
 * which it copies into the fresh record before this call. Where it has less the samples must be filled with -1: a
 * fresh record holds zeros, which count as such, but for the three timeouts (IP, ARP, DNS).
 */
VEXA_API void calc_sta_satisfaction_mov(vexa_score *score);

/** calc_vap_satisfaction() - the VAP's score: the mean of score_now over station_count, where stations that are not
 *  valid, skipped or not scored add nothing; -1 without stations. Returns @vap. */
VEXA_API vexa_vap *calc_vap_satisfaction(vexa_vap *vap);

/** calc_radio_satisfaction() - the radio's score: the mean of its VAPs' scores, weighted by their stations; -1 without
 *  stations. @vaps is a list like vexa_ap.vaps. Returns @radio. */
VEXA_API vexa_radio *calc_radio_satisfaction(vexa_radio *radio, const vexa_list *vaps);

/** calc_ap_satisfaction() - the access point's score, likewise of all VAPs. Returns @ap. */
VEXA_API vexa_ap *calc_ap_satisfaction(vexa_ap *ap);

/**
 * calc_satisfaction_mov() - the moving scores of every station, VAP and radio and of the access point, the counts of
 * anomalies and reasons of every VAP, and the access point's stations and means. They are of the first of a station's
 * two scores. A skipped station has -1, no reason and no anomalies.
 */
VEXA_API void calc_satisfaction_mov(vexa_ap *ap);

/** vexa_avg_round() - @sum / @count, halves away from zero; 0 when @count is 0. */
VEXA_API int64_t vexa_avg_round(int64_t sum, int64_t count);

/** vexa_avg_array() - the mean of @count values, rounded; 0 without any. */
VEXA_API uint64_t vexa_avg_array(const uint64_t *values, size_t count);

/** vexa_avg_compute() - set and return the average: rounded, at the end of the range where it goes beyond; @def while
 *  the count is not positive. */
VEXA_API int32_t vexa_avg_compute(vexa_avg *avg, int32_t def);

typedef struct vexa_avg_pair {
    int64_t sum;
    int64_t count;
} vexa_avg_pair;

/** vexa_avg_increment() - add to sum and count, which stay at the end of their range. The average is left alone. */
VEXA_API void vexa_avg_increment(vexa_avg *avg, vexa_avg_pair pair);

/** vexa_avg_increment_sum_weighted() - add @value times @weight to the sum and @weight to the count; -1 is no value. */
VEXA_API void vexa_avg_increment_sum_weighted(vexa_avg *avg, int32_t value, int32_t weight);

/**
 * vexa_remove_outliers() - drop what is more than three standard deviations away from the mean.
 * @values: what stays moves to the front.
 * @mean: set to the rounded mean of all values, also of those that are dropped.
 * @count: of @values; set to how many stay.
 *
 * Returns: 0; -1 without a value, and then @mean is untouched.
 */
VEXA_API int vexa_remove_outliers(int64_t *values, int64_t *mean, size_t *count);

/* ------------------------------------------------------------------------------------------------------------------
 * Limits for stations
 *
 * Rules for the traffic of a station: on its VAP, and on the uplinks of that VAP. They come from "qos." of
 * "/tmp/system.cfg" through one table of the process, for one thread: after a change of the file free it and make it
 * anew. The firmware's script sets the rules:
 *
 *     /bin/qos_control.sh replace-sta IFNAME VAP_ID ASSOCIATION_ID MINIMUMkbit MAXIMUMkbit
 *     /bin/qos_control.sh del-sta IFNAME VAP_ID ASSOCIATION_ID 0kbit 0kbit
 *
 * A name that a shell would not take as it is stands in quotes. Speeds are in kbit/s but where Mbit/s is said. What
 * sets rules opens the system log as "libvexa". Log tag "qos".
 */

/** Uplinks of a VAP. */
#define VEXA_QOS_UPLINKS 6

/** The limits of a VAP; of an interface that is an uplink only, just the name and the usage. */
typedef struct qos_vap_info {
    int32_t id; /* -1 when there is none */
    char devname[16];
    int64_t devspeed;    /* Mbit/s; 100 unless configured */
    int64_t dl_maxspeed; /* -1: none */
    int64_t dl_minspeed; /* -1: none; 1 when it is not below the maximum */
    char usage[12];      /* of "/var/run/vapusage.<name>", "user" without; "uplink": leads to the network */
    char uplink_devname[VEXA_QOS_UPLINKS][16];
    int64_t uplink_maxspeed[VEXA_QOS_UPLINKS];
    int64_t uplink_minspeed[VEXA_QOS_UPLINKS];
} qos_vap_info;

/**
 * init_qos_info() - make the table.
 *
 * Reads:   "qos.status" and "qos.mode"; "qos.vap.N" with the keys devname, id, dwnlink.maxspeed, dwnlink.minspeed and
 *          uplink.N.devname, .maxspeed, .minspeed; "qos.if.N" with devname, devspeed and type. An interface's speed is
 *          the maximum of what has none there. It has room for 32 VAPs and other uplinks, and 6 uplinks of a VAP; what
 *          is beyond is left out (logged).
 * Returns: 0, also without a table because the limits are switched off, and when there is one; -1 when the file cannot
 *          be read or memory runs out (logged).
 */
VEXA_API int init_qos_info(void);

/** free_qos_info() - release the table, if there is one. */
VEXA_API void free_qos_info(void);

/** get_qos_vap_info() - the entry with that name, borrowed from the table; NULL without entry, name or table. */
VEXA_API qos_vap_info *get_qos_vap_info(const char *vap);

/**
 * add_sta_qosrule() - set the limits of the VAP for a station.
 * @aid: association id.
 *
 * Runs:    the script for the VAP, then for each uplink but those of usage "uplink" that get_uplink_device() does not
 *          name. Without a minimum it is 64, without a maximum 1000000. Nothing when the limits of the VAP and its
 * first uplink are all that the VAP's interface can do. A script that fails is logged with its exit status. Sends:
 * request 0x8A25 on the VAP: association id and 1, or 0 when neither the maximum set on the VAP nor the last one set on
 * an uplink is below 350000. Returns: 0, whatever the script and the driver say; -1 without table or entry.
 */
VEXA_API int add_sta_qosrule(const char *vap, uint32_t aid);

/** remove_sta_qosrule() - delete what add_sta_qosrule() and update_sta_qosrate() set; the driver is not told. */
VEXA_API int remove_sta_qosrule(const char *vap, uint32_t aid);

/**
 * update_sta_qosrate() - set limits of the station's own, on the first VAP that knows it.
 * @mac: text.
 * @ul_max: maximum of its uplinks; negative: what the VAP's interface can do.
 * @dl_max: maximum on the VAP, likewise.
 *
 * A minimum that is not below its maximum is set as 1. Runs and sends what add_sta_qosrule() does; nothing is run for
 * unlimited VAPs when neither maximum is positive.
 * Returns: 0; -1 without table, for a text that is no address or when no VAP knows the station.
 */
VEXA_API int update_sta_qosrate(const char *mac, int64_t ul_min, int64_t ul_max, int64_t dl_min, int64_t dl_max);

/**
 * add_all_sta_qosrates() - add_sta_qosrule() for every station of every VAP, then "/var/run/qos.custom_rates.sh".
 *
 * Runs:    "/bin/sh /var/run/qos.custom_rates.sh" if that file exists.
 * Returns: 0 or the exit status of that script; -1 without table. VAPs whose stations are not known are passed over
 *          (logged).
 */
VEXA_API int add_all_sta_qosrates(void);

/* ------------------------------------------------------------------------------------------------------------------
 * LLDP neighbours
 *
 * What the device is plugged into, as the LLDP daemon's client "lldpcli" tells. The client runs in the shell, and in a
 * process group of its own; it has ended when a call returns. How often in a row an answer without neighbours was
 * logged is state of the process. Log tag "lldp".
 */

/**
 * vexa_get_lldp_json() - the neighbours, one object for each local port that the client knows a chassis behind.
 *
 * Runs:    "lldpcli -f json show neigh"; of its output 16383 bytes count. It may fall silent for 2 seconds at a time.
 * Shapes:  an array of {"local_port_name": text, "is_wired": boolean, "chassis_id": text, and where the client tells
 *          them "chassis_descr", "port_id", "port_descr": text}; wired ports have "local_port_idx", the number behind
 *          the first three characters of the name plus 1. A name is wired that begins with "eth" or "bond". Without an
 *          id the chassis is "00:00:00:00:00:00".
 * Returns: a new array, empty without neighbours (the first five answers of that kind in a row are logged) and when the
 *          answer is no JSON or not of LLDP (logged); what was built so far when memory runs out (logged); NULL when
 *          the client cannot be run or read, or falls silent (logged).
 */
VEXA_API json_t *vexa_get_lldp_json(void);

/**
 * vexa_get_lldp_report() - what is at the other end of the main port, and of a wireless uplink.
 * @chassis_descr: set to the description behind the main port, up to its first comma, cut to fit; "" without one.
 * @oui: set to the first six digits of that chassis's hardware address; "" when its id is none, or in 6 bytes or less.
 * @is_wireless_uplink: set to 1 when the name of get_uplink_device() begins with neither "eth" nor "bond", else to 0.
 * @uplink_descr: set to the description behind a wireless uplink, likewise.
 *
 * Reads:   get_main_phy_port_id(), get_uplink_device(), vexa_get_lldp_json(). A size of 0 leaves a text untouched.
 * Returns: 0; -1 without an uplink device; -ENOENT when the client cannot be asked.
 */
VEXA_API int vexa_get_lldp_report(char *chassis_descr, uint32_t chassis_descr_size, char *oui, uint32_t oui_size,
                                  uint8_t *is_wireless_uplink, char *uplink_descr, uint32_t uplink_descr_size);

/* ------------------------------------------------------------------------------------------------------------------
 * Station tracking device
 *
 * Requests to "/dev/vexa_sta_ht", which each call opens and closes. The results are those of ioctl(): negative with
 * errno on failure, and -1 without the device (logged; failed requests are too, but for the last). Selectors and
 * values are handed on to the device. Log tag "vexa_sta_ht_user".
 */

/** vexa_sta_ht_get_stas() - the stations of an interface, 6 bytes each. Returns the bytes written, at most @length. */
VEXA_API int vexa_sta_ht_get_stas(uint32_t ifindex, void *macs, uint64_t length);

/** vexa_sta_ht_get_stats() - fill the tracking member of a station whose mac is set. */
VEXA_API int vexa_sta_ht_get_stats(stainfo *station, uint32_t selector);

/** vexa_sta_ht_set_keyid() - attach a text, of which 31 characters count, to the station with that address. */
VEXA_API int vexa_sta_ht_set_keyid(const uint8_t *mac, uint32_t value, const char *keyid);

/** vexa_sta_ht_get_probe_frame() - the last probe frame of a station.
 * @length: room at @frame; set by the device, also on failure, and at most the room. */
VEXA_API int vexa_sta_ht_get_probe_frame(const uint8_t *mac, uint32_t selector, void *frame, uint32_t *length);

#ifdef __cplusplus
}
#endif

#endif /* LIBVEXA_H */
