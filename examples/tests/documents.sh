# Any document, in the cases:
#   rewrite     SAMPLE through inspect and rewrite
#   recompress  SAMPLE with all streams plain, then compressed again
#   streams     stream data of known samples
#   nested      pages below nodes, as inspect and pages show them
#   usage       arguments that are wrong
#   errors      input that does not open
#   verify      what would not be read again as it is
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
    if has_import; then # which takes the ring out of the tree, and says so
        status 0 "$programs/pages" "$work/cycle.pdf"
        grep -qx 'the page tree has lost 1 of its kids' "$work/err" || fail "$(cat "$work/err")"
        [ "$(cat "$work/out")" = 'page 1 4 0 0,0,595.25,842 90' ] || fail "$(cat "$work/out")"
    else
        status 1 "$programs/pages" "$work/cycle.pdf"
        reports 34084 8524
    fi
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
header.pdf 34084,8524 34067,8513
empty.pdf 34064,8510 34064,8510
ROWS
}

# A text with a backslash comes through; a key that would be read as another one is refused.
test_verify() {
    sed 's/(anonymous)/(\\134danon)/' "$samples/plain-2pages.pdf" >"$work/text.pdf"
    status 0 "$programs/rewrite" "$work/text.pdf" "$work/first.pdf"
    [ ! -s "$work/err" ] || fail "not a word was to be said: $(cat "$work/err")"
    [ "$(LC_ALL=C grep -ac '<5C64616E6F6E>' "$work/first.pdf")" -eq 1 ] || fail "the text is lost"
    status 0 "$programs/rewrite" "$work/first.pdf" "$work/second.pdf"
    same "$work/first.pdf" "$work/second.pdf"
    rm "$work/second.pdf"

    echo 'mine' >"$work/wanted"
    cp "$work/wanted" "$work/target.pdf"
    : >"$work/out"
    files=$(ls "$work")
    for target in target.pdf new.pdf; do
        status 1 "$programs/recipe_info" "$work/first.pdf" "$work/$target" 'A key' x
        grep -q "^error 34090 .*: $work/$target: .*A key.*; nothing was written$" "$work/err" ||
            fail "not said why: $(cat "$work/err")"
    done
    same "$work/wanted" "$work/target.pdf"
    [ "$(ls "$work")" = "$files" ] || fail "files were left: $(ls "$work")"
    status 0 "$programs/recipe_info" --no-verify "$work/first.pdf" "$work/target.pdf" 'A key' x
}

# Every sample that is sound is read as a whole, with the import and without; what it had beside its
# last revision is told. The others are refused, or repaired and decrypted by the import.
test_losses() {
    while read -r name pages warnings; do
        status 0 "$programs/rewrite" "$samples/$name.pdf" "$work/target.pdf"
        [ "$(cat "$work/err")" = "$(printf '%s' "$warnings")" ] || fail "$name: $(cat "$work/err")"
        [ "$("$programs/pages" "$work/target.pdf" | grep -c '^page ')" -eq "$pages" ] ||
            fail "$name: $("$programs/pages" "$work/target.pdf")"
    done <<ROWS
modern/filter-arrays 4
modern/gaps-in-the-numbers 6
modern/incremental-update 3 warning: what earlier revisions of the file held is not kept: 1
modern/linearized 3
modern/object-on-one-line 1
modern/object-streams 3
modern/object-streams-office 2
modern/space-behind-startxref 3
modern/trailer-on-one-line 3
modern/two-subsections 1
users/hyperref-form 2
users/inherited 3
users/jpeg-page 1
users/layers 1
users/stamped-ascii85 6
users/type3-font 1
ROWS
    while read -r name without helps_without with helps; do
        ! has_import || without=$with helps_without=$helps
        [ "$without" != done ] || { status 0 "$programs/pages" "$samples/modern/$name.pdf" && continue; }
        status 1 "$programs/pages" "$samples/modern/$name.pdf"
        grep "^error $without .*$name.pdf\(: .*\)*; " "$work/err" | grep -q -e "$helps_without" ||
            fail "$name: $(cat "$work/err")"
        if grep -q -e --force "$work/err"; then fail "advice that harms: $(cat "$work/err")"; fi
    done <<ROWS
encrypted-empty-password 34085 without.the.import,.which.decrypts done
encrypted-password-secret 34085 without.the.import,.which.decrypts 34065 --password-file
truncated 34084 without.the.import,.which.repairs 34067 whole
ROWS
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
