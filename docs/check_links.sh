#!/bin/sh
# usage: check_links.sh ROOT SITE
# Checks every relative link: of the pages in ROOT, as the repository shows them, and of what the
# site in SITE made of them. What a link names must be there, the heading too where it names one.
set -eu

root=$1
site=$2
list=$(mktemp)
trap 'rm -f "$list"' EXIT

# Lines "page link" and "page #anchor" of the pages, anchors as they are made of headings.
in_pages() {
    LC_ALL=C awk '
    /^```/ { fenced = !fenced }
    fenced || /^    / { next }
    /^#+ / {
        text = tolower($0)
        sub(/^#+ /, "", text)
        gsub(/[^a-z0-9_ -]/, "", text)
        gsub(/ /, "-", text)
        print "has", FILENAME "#" text
    }
    {
        gsub(/`[^`]*`/, "")
        while (match($0, /\]\([^)]*\)/)) {
            print "wants", FILENAME, substr($0, RSTART + 2, RLENGTH - 3)
            $0 = substr($0, RSTART + RLENGTH)
        }
    }' "$@"
}

# The same of HTML files; only those that were made of pages want something.
in_site() {
    LC_ALL=C awk '{
        line = $0
        while (match(line, /(id|name)="[^"]*"/)) {
            value = substr(line, RSTART, RLENGTH)
            sub(/^[a-z]*="/, "", value)
            print "has", FILENAME "#" substr(value, 1, length(value) - 1)
            line = substr(line, RSTART + RLENGTH)
        }
        if (FILENAME !~ /\/(index|page-[^\/]*)\.html$/) next
        line = $0
        while (match(line, /(href|src|data)="[^"]*"/)) {
            value = substr(line, RSTART, RLENGTH)
            sub(/^[a-z]*="/, "", value)
            print "wants", FILENAME, substr(value, 1, length(value) - 1)
            line = substr(line, RSTART + RLENGTH)
        }
    }' "$@"
}

# follow: fails where standard input wants what neither it nor the file system has.
follow() {
    LC_ALL=C awk '
    function exists(path,   line, found) {
        if (path in known) return known[path]
        found = system("test -e \"" path "\"") == 0
        return known[path] = found
    }
    # "a/b/../c" is "a/c".
    function straight(path) {
        while (match(path, /[^\/]+\/\.\.\//)) path = substr(path, 1, RSTART - 1) substr(path, RSTART + RLENGTH)
        return path
    }
    $1 == "has" { has[$2] = 1 }
    $1 == "wants" && $3 !~ /^[a-z]+:/ { from[++count] = $2; to[count] = $3 }
    END {
        for (i = 1; i <= count; ++i) {
            hash = index(to[i], "#")
            part = hash ? substr(to[i], hash) : ""
            file = hash ? substr(to[i], 1, hash - 1) : to[i]
            folder = from[i]
            sub(/[^\/]*$/, "", folder)
            path = file == "" ? from[i] : straight(folder file)
            bad = !exists(path) || (part != "" && !((path part) in has))
            if (!bad) continue
            print from[i] ": leads nowhere: " to[i]
            failed = 1
        }
        if (count == 0) {
            print "no links at all"
            failed = 1
        }
        exit failed
    }'
}

cd "$root"
in_pages ./*.md ./docs/*.md >"$list"
follow <"$list" >&2
cd "$site"
in_site ./*.html >"$list"
follow <"$list" >&2
