# How every program answers, whatever it does:
#   answers  --help and --version, at any place; what is no way to call it
#   inputs   files that are missing, no file, not permitted, no document or damaged
#   outputs  places where nothing can be written; a file that is written over
#   options  options at any place, -- in front of what is none, passwords from files

as= # what runs a program as somebody else

# A call of each program, of which IN, OUT and FOLDER stand for files.
calls() {
    stream=$("$programs/inspect" "$samples/form-2pages.pdf" |
        sed -n 's/^object \([0-9]*\) 0 7$/\1/p' | head -n 1)
    cat <<ROWS
inspect IN
pages IN
fields IN
summary IN
streams IN $stream 0
rewrite IN OUT
recompress none IN OUT
fill IN OUT name0=x
letterhead IN $samples/letterhead.pdf OUT
underlay 1 IN $samples/letterhead.pdf OUT
edit_values IN OUT Title
flatten_pages IN OUT
first_program IN OUT
quick_start IN OUT Title
custom_stripe IN OUT
batch FOLDER IN
recipe_content IN OUT
recipe_info IN OUT Author Me
recipe_letterhead IN $samples/letterhead.pdf OUT
recipe_logger IN
recipe_mail_merge IN $work/table FOLDER
recipe_mixed_input IN
recipe_resources IN
recipe_streams IN FOLDER
recipe_threads IN
recipe_vector IN OUT
ROWS
    [ ! -x "$programs/normalise" ] || echo normalise IN OUT
    printf 'name0\nx\n' >"$work/table"
    cp "$samples/form-2pages.pdf" "$work/in.pdf"
    rm -rf "$work/folder"
    mkdir "$work/folder"
}

# each COMMAND...: runs it for each call, in $program and $arguments, which have their files: IN is
# $in, OUT is $out, FOLDER is $folder.
each() {
    calls >"$work/calls"
    while read -r program arguments; do
        arguments=$(echo "$arguments" |
            sed "s|IN|${in:-$work/in.pdf}|; s|OUT|${out:-$work/out.pdf}|; s|FOLDER|${folder:-$work/folder}|")
        "$@"
    done <"$work/calls"
}

# answers OUTPUT WANTED ARGUMENT...: the program ends with that status and says how it is called
# there, and nothing on the other output.
answers() {
    from=$1
    wanted=$2
    shift 2
    status "$wanted" "$programs/$program" "$@"
    other=out
    [ "$from" = err ] || other=err
    grep -q "^usage: $program" "$work/$from" || fail "$program $*: $(cat "$work/$from")"
    [ ! -s "$work/$other" ] || fail "$program $*: $(cat "$work/$other")"
}

answers_all() {
    answers out 0 --help
    answers err 2
    answers err 2 --no-such
    status 0 "$programs/$program" --version
    grep -Eq '^.*Files PDF\)? [0-9]+\.[0-9]+\.[0-9]+$' "$work/out" || fail "$program: $(cat "$work/out")"
    [ "$program" != first_program ] || return 0
    # shellcheck disable=SC2086 # the arguments are words
    status 0 "$programs/$program" $arguments --help
    grep -q '^  --version  ' "$work/out" || fail "$program: $(cat "$work/out")"
    # shellcheck disable=SC2086 # the same
    status 2 "$programs/$program" $arguments --hlep
    grep -q "^$program: there is no option --hlep; near to it: --help" "$work/err" ||
        fail "$program: $(cat "$work/err")"
}

test_answers() {
    each answers_all
}

# fails CODE SAID...: the program fails with this code, in one line that says all that and what
# helps, and makes nothing. The example of README.md says what failed, and where.
fails() {
    code=$1
    shift
    case $program:$code in
    recipe_mixed_input:34064 | recipe_mixed_input:34084) return 0 ;; # an answer there
    first_program:* | quick_start:* | summary:* | custom_stripe:* | recipe_logger:* | \
        recipe_threads:* | recipe_vector:*) ;;
    *:34084) ! has_import || code=34067 ;; # beyond repair
    esac
    line="error $code (0x[0-9A-F]*): .*; "
    [ "$program" != quick_start ] || line='^/.*: '
    # shellcheck disable=SC2086 # the arguments are words
    status 1 $as "$programs/$program" $arguments
    cat "$work/out" "$work/err" >"$work/said"
    [ "$(grep -c "$line" "$work/said")" -eq 1 ] ||
        fail "$program, not one line with $code: $(cat "$work/said")"
    for said in "$@"; do
        grep "$line" "$work/said" | grep -qF -- "$said" ||
            fail "$program does not say $said: $(cat "$work/said")"
    done
    [ ! -e "$work/out.pdf" ] || fail "$program made something"
}

test_inputs() {
    echo 'no document' >"$work/text.pdf"
    head -c 200 "$samples/form-2pages.pdf" >"$work/cut.pdf"
    while read -r name code said; do
        in=$work/$name
        each fails "$code" "$said" "$name"
    done <<ROWS
missing.pdf 34049 there is no such file or folder
. 34052 it is a folder
text.pdf 34064 text.pdf
cut.pdf 34084 cut.pdf
ROWS
    # Who may read all files tries it as somebody else, where there is a way to be that.
    [ "$(id -u)" -ne 0 ] || as='setpriv --reuid=65534 --regid=65534 --clear-groups'
    $as test -x "$programs/inspect" 2>"$work/err" || { echo "not tried: no permission" && return; }
    echo secret >"$work/secret.pdf"
    chmod 0 "$work/secret.pdf"
    chmod 777 "$work"
    in=$work/secret.pdf
    each fails 34049 ': permission denied' secret.pdf
}

# Only programs that write to where they are told.
to_out() {
    grep -q "^$program .*OUT" "$work/calls" || return 0
    "$@"
}

# over_input: the result in the place of the input is what it is in another place.
over_input() {
    # shellcheck disable=SC2086 # the arguments are words
    status 0 "$programs/$program" $arguments
    cp "$work/in.pdf" "$work/over.pdf"
    # shellcheck disable=SC2046 # the same
    status 0 "$programs/$program" $(echo "$arguments" | sed "s|$work/in.pdf|$work/over.pdf|; s|$work/out.pdf|$work/over.pdf|")
    same "$work/out.pdf" "$work/over.pdf"
}

# no_space: where files may not be as large as the result the target stays as it was, and nothing
# else is left.
no_space() {
    echo mine >"$work/room/out.pdf"
    (
        trap '' XFSZ
        ulimit -f 1
        # shellcheck disable=SC2086 # the arguments are words
        exec "$programs/$program" $arguments
    ) >"$work/out" 2>"$work/err" && fail "$program wrote it all"
    grep -q "/room/out.pdf: .*files may not be as large as that" "$work/err" ||
        fail "$program: $(cat "$work/err")"
    [ "$(cat "$work/room/"*)" = mine ] || fail "$program left $(ls "$work/room")"
}

test_outputs() {
    out=$work
    each to_out fails 34052 "$work: it is a folder"
    out=$work/none/out.pdf
    each to_out fails 34049 "/none/out.pdf: its folder is not there"
    out=
    each to_out over_input
    rm "$work/out.pdf"
    mkdir "$work/room"
    out=$work/room/out.pdf
    each to_out no_space
    # Folders.
    calls >"$work/calls"
    while read -r program code arguments; do
        fails "$code" "/none"
    done <<ROWS
batch 34049 $work/in.pdf/none $work/in.pdf
recipe_mail_merge 34049 $work/in.pdf $work/table $work/none
recipe_streams 34051 $work/in.pdf $work/none
ROWS
}

test_options() {
    cp "$samples/letterhead.pdf" "$work/--force"
    cd "$work"
    status 0 "$programs/rewrite" --canonical --no-verify -- --force out.pdf
    status 0 "$programs/letterhead" out.pdf --pages=1 "$samples/letterhead.pdf" --above out.pdf
    refuses "$programs/letterhead" out.pdf out.pdf target.pdf <<ROWS
2 letterhead:.--pages.takes.a.value --pages
2 letterhead:.--above.takes.no.value --above=1
2 letterhead:.there.is.no.option.--page;.near.to.it:.--pages --page=1
2 letterhead:.wrong.number.of.arguments:.4 more
2 letterhead:.--mode.is.0.to.3 --pages=0
ROWS
    [ -x "$programs/normalise" ] || return 0
    secret=$samples/modern/encrypted-password-secret.pdf
    printf 'secret\r\nmore\n' >password
    printf 'other\n' >wrong
    for program in inspect normalise recipe_resources; do
        out=
        [ "$program" != normalise ] || out=out.pdf
        status 0 "$programs/$program" "$secret" --password-file password $out
        status 1 "$programs/$program" --password-file wrong "$secret" $out
        reports 34065 8511
        grep -q "; give its password: --password-file FILE " err || fail "$(cat err)"
        status 1 "$programs/$program" --password-file none "$secret" $out
        reports 34049 8501
        grep -q ': none: there is no such file' err || fail "$(cat err)"
    done
}
