#!/bin/sh
# Checks the direction of the includes:
#
#   host, spelling <- values <- packed <- state <- reader, writer, compose, forms <- structures
#                                                                                <- document
#   public headers <- tools <- tools/pages <- tools/letterheads
#                                          <- tools/forms, on tools/fonts too
#   public headers <- import, which alone knows libqpdf
#
# Tools stand on the public headers, the runtime and spelling, and nothing includes what is theirs.
# Spelling stands on nothing, and the import sees it too.
#
# usage: check_layering.sh [ROOT]
# Prints file:line of each offender and fails; a tree without a single include fails too.
set -eu

cd "${1:-$(dirname "$0")/..}"
roots=
for root in include src import; do
    if [ -d "$root" ]; then
        roots="$roots $root"
    fi
done
if [ -z "$roots" ]; then
    echo "layering: none of include/, src/ and import/ in $(pwd)" >&2
    exit 2
fi

# shellcheck disable=SC2086 # the roots are words
find $roots -type f \( -name '*.h' -o -name '*.cpp' \) | LC_ALL=C sort | awk '
BEGIN {
    # What each layer may see, itself included.
    sees["public-host"] = " public-host "
    sees["public-pdf"] = " public-host public-pdf "
    sees["host"] = " public-host host codes "
    sees["values"] = " public-host public-pdf codes host spelling values "
    sees["packed"] = " public-host public-pdf codes host spelling values packed "
    sees["state"] = " public-host public-pdf codes host spelling values packed state "
    split("reader writer compose forms", stages, " ")
    for (i in stages)
        sees[stages[i]] = sees["state"] stages[i] " "
    sees["spelling"] = " spelling "
    sees["structures"] = sees["state"] "reader writer compose forms structures "
    sees["document"] = sees["structures"] "document "
    # Tools are built on what everybody has, and on the runtime.
    sees["public-tools"] = sees["public-pdf"] "codes public-tools "
    sees["tools"] = sees["public-tools"] "host spelling tools "
    sees["tools/pages"] = sees["tools"] "tools/pages "
    sees["tools/fonts"] = sees["tools"] "tools/fonts "
    sees["tools/letterheads"] = sees["tools/pages"] "tools/letterheads "
    sees["tools/forms"] = sees["tools/pages"] "tools/fonts tools/forms "
    sees["public-import"] = sees["public-tools"] "public-import "
    sees["import"] = sees["public-import"] "spelling import "
    # The public error codes are named in one place, which the runtime shares.
    sees["public-pdf"] = sees["public-pdf"] "codes "
    system_header = "^(unistd|fcntl|dlfcn|poll|windows|io|libdeflate|igzip_lib|isa-l)[.]h$" \
                    "|^(sys|isa-l)/|^(fstream|filesystem)$"
}

function layer(path,    part, count) {
    if (path ~ /^include\/host\//) return "public-host"
    if (path == "include/pdf/errors.h") return "codes"
    if (path ~ /^include\/pdf\/tools\//) return "public-tools"
    if (path == "include/pdf/import.h") return "public-import"
    if (path ~ /^import\//) return "import"
    if (path ~ /^include\/pdf\//) return "public-pdf"
    if (path ~ /^src\/(host|values|packed|state|document|reader|writer|compose|forms|spelling|structures|tools)\//) {
        count = split(path, part, "/")
        return part[2] == "tools" && count > 3 ? "tools/" part[3] : part[2]
    }
    return ""
}

function exists(path,    line, found) {
    if (!(path in known)) {
        found = (getline line < path) >= 0
        close(path)
        known[path] = found
    }
    return known[path]
}

# The file an include means, as a path from the root; empty for another library.
function target(file, name, quoted,    folder) {
    folder = file
    sub(/[^\/]*$/, "", folder)
    if (quoted && exists(folder name)) return folder name
    if (exists("include/" name)) return "include/" name
    if (name ~ /^pdf\//) return "include/" name
    if (name ~ /^(host|values|packed|state|document|reader|writer|compose|forms|spelling|structures|tools)\//) return "src/" name
    if (quoted) return "?"
    return ""
}

function offend(reason) {
    printf "%s:%d: %s\n", file, number, reason
    ++offenders
}

function check(name, quoted,    from, goal, to) {
    ++includes
    from = layer(file)
    if (from == "codes") from = "public-pdf"
    if (name ~ /(^|\/)[.][.]\//) {
        offend("\"" name "\" climbs out of its folder")
        return
    }
    goal = target(file, name, quoted)
    if (goal == "") {
        if (from !~ /^(public-)?host$/ && name ~ system_header)
            offend("<" name "> belongs to host alone")
        if (from != "import" && name ~ /^qpdf\//)
            offend("<" name "> belongs to import alone")
        return
    }
    to = layer(goal)
    if (to == "")
        offend("\"" name "\" is in no layer")
    else if (index(sees[from], " " to " ") == 0)
        offend(from " may not include " goal " (" to ")")
}

{
    file = $0
    number = 0
    if (layer(file) == "") {
        offend("the file is in no layer")
        next
    }
    while ((getline text < file) > 0) {
        ++number
        if (text !~ /^[ \t]*#[ \t]*include[ \t]*[<"]/) continue
        sub(/^[ \t]*#[ \t]*include[ \t]*/, "", text)
        quoted = substr(text, 1, 1) == "\""
        text = substr(text, 2)
        sub(/[>"].*$/, "", text)
        check(text, quoted)
    }
    close(file)
}

END {
    if (includes == 0) {
        print "layering: no include seen"
        exit 2
    }
    printf "layering: %d includes, %d offenders\n", includes, offenders
    exit offenders ? 1 : 0
}
'
