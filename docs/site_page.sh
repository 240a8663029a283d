#!/bin/sh
# usage: site_page.sh PAGE
# Prints a page as the site wants it: headings have ids, links go to the site's pages. A heading
# "On disk" of docs/file-format.md gets the id "file-format-on-disk"; links in the repository name
# it as "file-format.md#on-disk". README.md stays the main page.
set -eu

LC_ALL=C awk '
function page_id(file) {
    sub(/\.md$/, "", file)
    sub(/^.*\//, "", file)
    return file == "README" ? "index" : "page-" tolower(file)
}

# The id that a heading gets in the view of the repository.
function anchor(heading) {
    heading = tolower(heading)
    gsub(/[^a-z0-9_ -]/, "", heading)
    gsub(/ /, "-", heading)
    return heading
}

function target(link,   hash, part, file) {
    if (link ~ /^[a-z]+:/) return link
    hash = index(link, "#")
    part = hash ? substr(link, hash + 1) : ""
    file = hash ? substr(link, 1, hash - 1) : link
    if (file == "") file = FILENAME
    if (file ~ /\.md$/) return "@ref " page_id(file) (part == "" ? "" : "-" part)
    if (file ~ /include\/.*\.h$/) {
        sub(/^.*include\//, "", file)
        return "@ref " file
    }
    sub(/^.*\//, "", file)
    return file ~ /\.cpp$/ ? "@ref " file : file
}

# Code between backquotes is no link. Doxygen takes a percent sign off the word behind it there.
function links(line,   result, place, text) {
    result = ""
    while (match(line, /`[^`]*`|\]\([^)]*\)/)) {
        text = substr(line, RSTART, RLENGTH)
        result = result substr(line, 1, RSTART - 1)
        line = substr(line, RSTART + RLENGTH)
        if (substr(text, 1, 1) == "`") {
            gsub(/%[A-Za-z]/, "%&", text)
        } else {
            text = "](" target(substr(text, 3, length(text) - 3)) ")"
        }
        result = result text
    }
    return result line
}

/^```/ { fenced = !fenced }
fenced || /^    / { print; next }
/^#+ / {
    match($0, /^#+ /)
    text = substr($0, RLENGTH + 1)
    id = page_id(FILENAME)
    if (RLENGTH > 2) {
        print $0 " {#" id "-" anchor(text) "}"
    } else if (id == "index") {
        print $0
    } else {
        print $0 " {#" id "}"
    }
    next
}
{ print links($0) }
' "$1"
