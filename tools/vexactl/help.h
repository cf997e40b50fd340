// SPDX-License-Identifier: MIT
#pragma once

#include "arguments.h"
#include "document.h"

#include <string>

// what --help shows: of one verb, of the verbs of a family, or of all
std::string help_text(const arguments &args);
json_t *help_document(const arguments &args);
