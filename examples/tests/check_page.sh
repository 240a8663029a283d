#!/bin/sh
# usage: check_page.sh PAGE EXAMPLE LINES
# Checks that what stands between the lines "// page begin" and "// page end" of EXAMPLE is, line by
# line, a C++ block of PAGE, and that it has at most LINES lines.
set -eu

LC_ALL=C awk -v page="$1" -v limit="$3" '
/^\/\/ page begin$/ { inside = 1; next }
/^\/\/ page end$/ { inside = 0 }
inside { wanted = wanted $0 "\n"; ++lines }

END {
    while ((getline line < page) > 0) {
        if (line == "```cpp") {
            block = ""
            shown = 1
        } else if (line == "```" && shown) {
            shown = 0
            if (block == wanted) found = 1
        } else if (shown) {
            block = block line "\n"
        }
    }
    if (lines == 0) print FILENAME " has nothing between its markers"
    if (lines > limit) print FILENAME " has " lines " lines, " limit " at most are wanted"
    if (!found) print page " does not show this:\n" wanted
    exit !(found && lines > 0 && lines <= limit)
}' "$2"
