#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Turns the comments of a header into what Doxygen reads: doxygen_filter.py HEADER, result on stdout.

Headers are written to be read as they are: plain // comments, in front of what they describe; indented lines
are tables and formulas. A header is a group of the reference. Within it a comment that begins with dashes, or
that an empty line separates from what follows, opens a group of its own.
"""

import re
import sys
from pathlib import Path

TITLE_LENGTH = 75  # a longer first sentence is no title
# Two columns, as in lists of arguments and statuses: name, at least two spaces, text.
ROW = re.compile(r"(?P<indent> +)(?P<name>\S+(?: \S+)*) {2,}(?P<text>\S.*)")


def escape(text):
    """What Markdown or Doxygen would take for their own signs."""
    return re.sub(r"([<>*\\@#])", r"\\\1", text)


def as_list(lines):
    """Lines of two columns as rows of a table; None where they are something else."""
    rows, indent, column = [], None, None
    for line in lines:
        found = ROW.fullmatch(line)
        if rows and not found and len(line) - len(line.lstrip()) == indent:
            rows.append([line.strip(), ""])
            continue
        if found and found["name"] and indent in (None, len(found["indent"])):
            indent = len(found["indent"])
            column = column or found.start("text")
            if found.start("text") != column and " , " not in found["name"]:
                return None
            rows.append([found["name"], found["text"]])
        elif rows and len(line) - len(line.lstrip()) == column:
            rows[-1][1] += " " + line.strip()
        else:
            return None
    # Columns within the text are a table that a proportional typeface would spoil.
    if any("   " in text for _, text in rows):
        return None
    cells = (f"<tr><td>{escape(name)}<td>{escape(text)}" for name, text in rows)
    return ["<table class=\"entries\">", *cells, "</table>"]


def as_markdown(lines):
    """The text of a comment: paragraphs as they are, indented lines as list or as they stand."""
    result, at = [], 0
    while at < len(lines):
        if not lines[at].startswith("  "):
            result.append(escape(lines[at]))
            at += 1
            continue
        end = at
        while end < len(lines) and (lines[end].startswith("  ") or
                                    (not lines[end] and lines[end + 1:end + 2] and
                                     lines[end + 1].startswith("  "))):
            end += 1
        block = lines[at:end]
        result += ["", *(as_list(block) or ["@verbatim", *block, "@endverbatim"]), ""]
        at = end
    return result


def group(lines, name):
    """The name of a group whose title is the first sentence, and what opens it; None where that is too long."""
    heading = lines[0].strip("- ")
    title, _, rest = heading.partition(". " if ". " in heading else ": ")
    if len(title) > TITLE_LENGTH or not title[:1].isalnum():
        return None
    body = [rest, *lines[1:]] if rest else lines[1:]
    identifier = re.sub(r"\W+", "_", f"{name} {title}".lower()).rstrip("_")
    return identifier, [f"/** @defgroup {identifier} {title.rstrip('.')}", "", *as_markdown(body), "@{ */"]


def convert(text, name):
    lines = text.splitlines()
    out, at, open_groups = [], 0, 0
    while at < len(lines):
        if not lines[at].startswith("//"):
            # Remarks behind a field or enumerator, which may go on below it.
            out.append(re.sub(r"^(.*[,;{\w}]) +// (.*)$", lambda m: f"{m[1]}  ///< {escape(m[2])}",
                              lines[at]))
            at += 1
            continue
        end = at
        while end < len(lines) and lines[end].startswith("//"):
            end += 1
        block = [re.sub("^// ?", "", line) for line in lines[at:end]]
        at = end
        if block[0].startswith("SPDX"):
            current, opening = group(block[1:], "header_" + name)
            out += ["/** @file */", *opening]
            open_groups = 1
            continue
        stands_alone = end < len(lines) and not lines[end]
        found = group(block, name) if stands_alone or block[0].startswith("---") else None
        if found is not None:
            current, opening = found
            out += ["/** @} */"] * (open_groups - 1) + opening
            open_groups = 2
        elif stands_alone:  # goes on about the group
            out += ["/** @} */", f"/** @addtogroup {current}", "", *as_markdown(block), "@{ */"]
        else:
            out += ["/**", *as_markdown(block), "*/"]
    return "\n".join([*out, *["/** @} */"] * open_groups]) + "\n"


if __name__ == "__main__":
    header = Path(sys.argv[1])
    sys.stdout.write(convert(header.read_text(encoding="utf-8"), header.name.replace(".", "_")))
