#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns the header's comments into Doxygen's form: doxygen_filter.py HEADER

"name() - what it does", "@argument: text" and labelled lines ("Reads:   text", "Threads   text") become a brief,
parameters and paragraphs; a banner becomes a group. All else is text, so that none of its signs means anything to
Doxygen."""
import re
import sys

PARAMETER = re.compile(r"^@(\w+):\s*(.*)$")
LABEL = re.compile(r"^([A-Z][a-z]+(?: and [a-z]+)?)(?::\s+|\s{2,})(.*)$")
TITLE = re.compile(r"^(\w+\(\)|\w+) - (.*)$")
MEANT = str.maketrans({sign: "\\" + sign for sign in "\\&$#<>%\"@"})


def plain(text):
    marked = re.sub(r"@(\w+)", "\x01\\1", text)  # an argument, mentioned
    return re.sub("\x01(\\w+)", r"<em>\1</em>", marked.translate(MEANT)).replace("::", r"\::")


def line(text):
    """One line of a comment, without its star."""
    if found := PARAMETER.match(text):
        return f"@param {found[1]} {plain(found[2])}"
    if found := LABEL.match(text):
        return f"@par {found[1]}\n{plain(found[2])}"
    if found := TITLE.match(text):
        return plain(found[2])
    return plain(text)


def documentation(comment):
    """A comment /** ... */ with its signs guarded."""
    lines = [re.sub(r"^\s*\* ?", "", part) for part in comment[3:-2].split("\n")]
    return "/** " + "\n".join(line(part.strip()) for part in lines) + " */"


def banner(comment, number):
    lines = [re.sub(r"^\s*\* ?", "", part).strip() for part in comment[2:-2].split("\n")[1:]]
    title, text = plain(lines[0]), "\n".join(plain(part) for part in lines[1:])
    return f"{'/** @} */' if number else ''}\n/** @defgroup family{number:02} {title}\n{text}\n@{{ */"


def trailing(comment):
    """A remark behind a member becomes its description."""
    return "/**<" + plain(comment[2:-2]) + "*/"


def header(text):
    number = 0

    def replacement(found):
        nonlocal number
        comment = found[0]
        if comment.startswith("/**"):
            return documentation(comment)
        if comment.startswith("/* ---"):
            number += 1
            return banner(comment, number - 1)
        before = text[text.rfind("\n", 0, found.start()) + 1:found.start()].rstrip()
        return trailing(comment) if before.endswith((";", ",")) else comment

    text = re.sub(r"/\*.*?\*/", replacement, text, flags=re.S)
    text = text.replace("/** ", "/** @mainpage\n", 1)  # what the header says first
    return re.sub(r"(\n#ifdef __cplusplus\n\}\n)", "\n/** @} */\\1", text)


with open(sys.argv[1], encoding="utf-8") as file:
    print(header(file.read()))
