// SPDX-License-Identifier: MIT
#pragma once

#include "sim/descriptor.h"

#include <filesystem>

// The few things that are done with mounts, all inside the private mount namespace.
namespace sim::mounts {

// What happens here stays here.
void make_private();

// A copy of what is mounted at `path` and below, not yet attached anywhere.
descriptor copy_of(const std::filesystem::path &path);
descriptor copy_of(const descriptor &folder, const std::string &name);

void attach(const descriptor &copy, const std::filesystem::path &path);

// False when the kernel does not allow it.
bool mount_new(const char *type, const std::filesystem::path &path, const char *data = "");

enum class reach { this_mount, all_below };
void make_read_only(const std::filesystem::path &path, reach);

// Makes `path` a mount of its own that can be written. False when the kernel does not allow it.
bool make_writable(const std::filesystem::path &path);

} // namespace sim::mounts
