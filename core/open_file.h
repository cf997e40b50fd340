// SPDX-License-Identifier: MIT
#pragma once

#include "core/owner.h"

#include <fcntl.h>

// Opens a state file to read. Nothing is waited for: a FIFO in its place reads as empty, a terminal is not taken over.
unique_file open_reader(const char *path, int dirfd = AT_FDCWD);

// The same without a stream, for what is read in pieces of a chosen size.
unique_fd open_descriptor(const char *path, int dirfd = AT_FDCWD);

// Opens a state file of the library's own to write, and makes it where it is missing. A link in its place is not
// followed, and a FIFO without a reader does not keep the caller waiting.
unique_fd open_writable(const char *path, int flags, mode_t mode, int dirfd = AT_FDCWD);

// Takes over a descriptor, which is closed when there is no stream.
unique_file stream_of(unique_fd fd, const char *mode);

// Writes out what is buffered and closes; false when it did not all reach the file.
bool close_written(unique_file file);
