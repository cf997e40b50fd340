// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

// The sections as one page that needs nothing from elsewhere: no script, no picture, light or dark as the reader likes.
std::string html_page(const std::string &title, const std::vector<section> &sections);
