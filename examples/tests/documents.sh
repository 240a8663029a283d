# Any document, in the cases:
#   rewrite     SAMPLE through inspect and rewrite
#   recompress  SAMPLE with all streams plain, then compressed again
#   streams     stream data of known samples
#   nested      pages below nodes, as inspect and pages show them
#   usage       arguments that are wrong
#   errors      input that does not open
#   verify      a document whose rewrite does not open
#   losses      documents that do not come through a rewrite as they were

# document NAME OBJECTS ENTRIES writes a file of those objects, lines of "ID VALUE", with a table
# of those entries, lines of "ID KIND".
document() {
    path=$work/$1
    printf '%%PDF-1.4\n' >"$path"
    : >"$work/offsets"
    printf '%s\n' "$2" | while read -r id value; do
        printf '%s %d\n' "$id" $(($(wc -c <"$path"))) >>"$work/offsets"
        printf '%s 0 obj\n%s\nendobj\n' "$id" "$value" >>"$path"
    done
    start=$(($(wc -c <"$path")))
    printf 'xref\n0 %d\n' "$(printf '%s\n' "$3" | wc -l)" >>"$path"
    printf '%s\n' "$3" | while read -r id kind; do
        offset=$(sed -n "s/^$id  *//p" "$work/offsets")
        printf '%010d %05d %s \n' "${offset:-0}" 0 "$kind" >>"$path"
    done
    printf 'trailer\n<</Size 5/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n' "$start" >>"$path"
}

# A document is the same after a rewrite, and the second rewrite is the first, byte by byte.
test_rewrite() {
    "$programs/inspect" "$samples/$sample" >"$work/before"
    "$programs/rewrite" "$samples/$sample" "$work/first.pdf"
    "$programs/rewrite" "$work/first.pdf" "$work/second.pdf"
    same "$work/first.pdf" "$work/second.pdf"
    "$programs/inspect" "$work/first.pdf" >"$work/after"
    same "$work/before" "$work/after"
    objects=$(sed -n 's/^objects //p' "$work/before")
    [ "$objects" -gt 0 ] || fail "no objects"
    [ "$(grep -c '^object ' "$work/before")" -eq "$objects" ] || fail "object lines"
    [ "$(grep -c '^page ' "$work/before")" -eq "$(sed -n 's/^pages //p' "$work/before")" ] ||
        fail "page lines"
}

# Streams hold the same data whatever their compression.
test_recompress() {
    "$programs/inspect" "$samples/$sample" >"$work/before"
    "$programs/recompress" none "$samples/$sample" "$work/none.pdf"
    "$programs/recompress" flate "$work/none.pdf" "$work/flate.pdf"
    for kind in none flate; do
        "$programs/inspect" "$work/$kind.pdf" >"$work/after"
        same "$work/before" "$work/after"
    done
    sed -n 's/^object \([0-9]*\) \([0-9]*\) 7$/\1 \2/p' "$work/before" >"$work/streams"
    [ -s "$work/streams" ] || fail "no streams"
    mkdir -p "$work/sample" "$work/flate"
    "$programs/recipe_streams" "$samples/$sample" "$work/sample" >"$work/out"
    "$programs/recipe_streams" "$work/flate.pdf" "$work/flate" >"$work/out"
    while read -r id generation; do
        # Streams of several filters stay as they are; all others are stored plainly.
        wanted=$work/sample/$id.bin
        [ -e "$wanted" ] || "$programs/streams" "$samples/$sample" "$id" "$generation" >"$wanted"
        "$programs/streams" "$work/none.pdf" "$id" "$generation" >"$work/none"
        same "$wanted" "$work/none"
        got=$work/flate/$id.bin
        [ -e "$got" ] || "$programs/streams" "$work/flate.pdf" "$id" "$generation" >"$got"
        same "$wanted" "$got"
    done <"$work/streams"
}

test_streams() {
    # Name, object, where its data lies in the file, checksum and length of the decoded data.
    while read -r name id offset length decoded; do
        tail -c "+$((offset + 1))" "$samples/$name" | head -c "$length" >"$work/wanted"
        "$programs/streams" "$samples/$name" "$id" 0 >"$work/raw"
        same "$work/wanted" "$work/raw"
        got=$("$programs/streams" "$samples/$name" "$id" 0 --decode | cksum)
        [ "$got" = "$decoded" ] || fail "$name, object $id: decoded data is $got"
    done <<ROWS
typeset-report.pdf 4 181 216 3578400841 437
browser-print.pdf 9 697 2266 415372378 9339
ROWS
    status 1 "$programs/streams" "$samples/typeset-report.pdf" 1 0
    reports 1288 508
    status 1 "$programs/streams" "$samples/typeset-report.pdf" 4 1
    reports 33921 8481
    status 1 "$programs/streams" "$samples/plain-2pages.pdf" 8 0 --decode
    reports 1305 519
    [ ! -w /dev/full ] || {
        got=0
        "$programs/streams" "$samples/typeset-report.pdf" 4 0 >/dev/full 2>"$work/err" || got=$?
        [ "$got" -eq 1 ] || fail "a full device gave $got"
        reports 34051 8503
    }
}

# Pages below a node: inspect shows the kids of the root, and says so; pages shows what a reader sees.
test_nested() {
    document nested.pdf '1 <</Type/Catalog/Pages 2 0 R>>
2 <</Type/Pages/Count 2/Rotate 90/Kids[3 0 R]>>
3 <</Type/Pages/MediaBox[0 0 595.25 5 0 R]/Kids[4 0 R 4 0 R]>>
4 <</Type/Page>>
5 842' '0 f
1 n
2 n
3 n
4 n
5 n'
    status 0 "$programs/pages" "$work/nested.pdf"
    printf 'page 1 4 0 0,0,595.25,842 90\npage 2 4 0 0,0,595.25,842 90\n' >"$work/wanted"
    same "$work/wanted" "$work/out"
    status 0 "$programs/inspect" "$work/nested.pdf"
    printf 'page 1 3 0\nnested 2\n' >"$work/wanted"
    tail -n 2 "$work/out" >"$work/got"
    same "$work/wanted" "$work/got"
    status 0 "$programs/pages" "$samples/plain-2pages.pdf"
    [ "$(wc -l <"$work/out")" -eq 2 ] || fail "not two pages: $(cat "$work/out")"
    status 0 "$programs/inspect" "$samples/plain-2pages.pdf"
    if grep -q nested "$work/out"; then fail "no tree is nested there"; fi
    printf '%s' "$(cat "$work/nested.pdf")" | sed 's,/Kids\[4 0 R 4 0 R\],/Kids[4 0 R 2 0 R],' \
        >"$work/cycle.pdf"
    status 1 "$programs/pages" "$work/cycle.pdf"
    reports 1542 606
}

test_usage() {
    while read -r program arguments; do
        # shellcheck disable=SC2086 # the arguments are words
        status 2 "$programs/$program" $arguments
        grep -Eq "^usage: $program " "$work/err" || fail "$program $arguments: no usage line"
        [ ! -s "$work/out" ] || fail "$program $arguments: something on standard output"
    done <<ROWS
inspect FILE FILE
inspect --verbose
pages FILE FILE
rewrite FILE OUT --verify
rewrite --no-verify FILE
recompress FILE OUT
recompress lzw FILE OUT
streams FILE 1
streams FILE one 0
streams FILE 1x 0
streams FILE -1 0
streams FILE 4294967296 0
streams FILE 1 65536
streams FILE 1 0 decode
ROWS
}

test_errors() {
    printf '%%PDF-1.4\n' >"$work/header.pdf"
    : >"$work/empty.pdf"
    # Name, code, code in hexadecimal, without the import and with it.
    while read -r name without with; do
        code=$without
        ! has_import || code=$with
        for program in inspect rewrite; do
            # shellcheck disable=SC2046 # no path has a blank
            status 1 "$programs/$program" "$work/$name" \
                $([ $program = inspect ] || echo "$work/never.pdf")
            reports "${code%,*}" "${code#*,}"
        done
        [ ! -e "$work/never.pdf" ] || fail "$name was rewritten"
    done <<ROWS
header.pdf 1282,502 34067,8513
empty.pdf 1280,500 34064,8510
ROWS
}

# This library does not read again what it makes of a text with a backslash.
test_verify() {
    sed 's/(anonymous)/(\\134danon)/' "$samples/plain-2pages.pdf" >"$work/text.pdf"
    echo 'mine' >"$work/wanted"
    cp "$work/wanted" "$work/target.pdf"
    : >"$work/out"
    : >"$work/err"
    files=$(ls "$work")
    for target in target.pdf new.pdf; do
        status 1 "$programs/rewrite" "$work/text.pdf" "$work/$target"
        grep -q "^error 1287 .*$work/$target: left as it was, for the result would not open; " "$work/err" ||
            fail "not said why: $(cat "$work/err")"
    done
    same "$work/wanted" "$work/target.pdf"
    [ "$(ls "$work")" = "$files" ] || fail "files were left: $(ls "$work")"
    status 0 "$programs/rewrite" --no-verify "$work/text.pdf" "$work/target.pdf"
}

# What the library reads a part of is read as a whole, or refused.
test_losses() {
    for name in incremental-update:3 two-subsections:1 gaps-in-the-numbers:6; do
        file=$samples/modern/${name%:*}.pdf
        echo mine >"$work/target.pdf"
        if has_import; then
            status 0 "$programs/rewrite" "$file" "$work/target.pdf"
            if grep -q '^warning: ' "$work/err"; then fail "$name: $(cat "$work/err")"; fi
            [ "$("$programs/pages" "$work/target.pdf" | grep -c '^page ')" -eq "${name#*:}" ] ||
                fail "$name: $("$programs/pages" "$work/target.pdf")"
            continue
        fi
        status 3 "$programs/rewrite" "$file" "$work/target.pdf"
        grep -q '^error 34080 .*target.pdf: left as it was; this program was built without' "$work/err" ||
            fail "$name: $(cat "$work/err")"
        [ "$(cat "$work/target.pdf")" = mine ] || fail "$name: the target was written"
        status 0 "$programs/rewrite" --force "$file" "$work/target.pdf"
        grep -q '^warning: ' "$work/err" || fail "$name: forced, and not a word"
    done
    # Numbers stay as they were read, or go their way, and are told.
    status 0 "$programs/rewrite" --canonical "$samples/browser-print.pdf" "$work/parts.pdf"
    [ "$(cat "$work/err")" = 'warning: fractions lose the zeros that they begin with: 11, first in object 41' ] ||
        fail "$(cat "$work/err")"
    status 0 "$programs/rewrite" "$samples/browser-print.pdf" "$work/faithful.pdf"
    [ ! -s "$work/err" ] || fail "faithful: $(cat "$work/err")"
    "$programs/rewrite" --canonical "$work/faithful.pdf" "$work/again.pdf" 2>"$work/err"
    same "$work/parts.pdf" "$work/again.pdf"
    status 0 "$programs/rewrite" --faithful "$work/faithful.pdf" "$work/again.pdf"
    same "$work/faithful.pdf" "$work/again.pdf"
}
