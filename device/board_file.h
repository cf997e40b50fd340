// SPDX-License-Identifier: MIT
#pragma once

// What the factory told the kernel of this board, in lines "key=value" of at most 254 characters.
constexpr unsigned board_value_size = 255;

// The last value of the lines that begin with a key, "" without any. False when the file cannot be opened.
bool read_board_value(const char *path, const char *key, char (&value)[board_value_size]);
