// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// Configurations like those of an access point: families of numbered sections, 28 bytes a line on average.

// No text of its own on the heap: what is measured later finds it without holes.
struct config_line {
    char key[32], value[32];
};

std::vector<config_line> make_lines(size_t count);

// Every tenth line once more, with another value.
std::vector<config_line> make_overrides(const std::vector<config_line> &lines);

// The same lines with one value in twenty changed.
std::vector<config_line> change_some(std::vector<config_line> lines);

std::vector<config_line> scatter(std::vector<config_line> lines);

std::string text_of(const std::vector<config_line> &lines);

// A file that lives as long as the program.
class input_file {
public:
    explicit input_file(const std::string &text);
    input_file(const input_file &) = delete;
    input_file &operator=(const input_file &) = delete;
    ~input_file();
    const char *path() const { return path_.c_str(); }

private:
    int fd_;
    std::string path_;
};
