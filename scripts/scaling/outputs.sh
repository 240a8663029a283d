# shellcheck shell=bash disable=SC2034,SC2154 # part of scripts/check-scaling: the outputs of the mail merge.

# now: the time in nanoseconds.
now() {
    date +%s%N
}

# seconds START: the time since then.
seconds() {
    local start=$1
    echo "$start $(now)" | awk '{ printf "%.1f s", ($2 - $1) / 1e9 }'
}

# written FOLDER: how many outputs are there.
written() {
    local folder=$1
    find "$work/$folder" -name '*.pdf' | wc -l
}

# wait_for SECONDS COMMAND...: waits until the command succeeds. It fails where that takes longer.
wait_for() {
    local tries=$(($1 * 5))
    shift
    until "$@"; do
        tries=$((tries - 1))
        [ $tries -gt 0 ] || return 1
        sleep 0.2
    done
}

# has_half FOLDER: half of the outputs are there.
has_half() {
    local folder=$1
    [ "$(written "$folder")" -ge $((rows / 2)) ]
}

# check_outputs FOLDER: all outputs are there, once, and the same as those of one process. A writer that
# was killed leaves a temporary file, which is no output.
check_outputs() {
    local folder=$1
    find "$work/$folder" -type f ! -name '[0-9]*.pdf' >"$work/$folder.left"
    [ "$(wc -l <"$work/$folder.left")" -le $((2 * cores)) ] || fail "$folder left $(cat "$work/$folder.left")"
    xargs -r rm -f <"$work/$folder.left"
    diff -rq "$work/alone" "$work/$folder" >"$work/$folder.diff" || fail "$folder: $(head -n 3 "$work/$folder.diff")"
}

# empty_folder FOLDER: makes the folder anew, with nothing in it.
empty_folder() {
    local folder=$1
    rm -rf "${work:?}/$folder"
    mkdir "$work/$folder"
}

# merge_alone: makes the outputs that all others are compared with, by one process.
merge_alone() {
    local start
    {
        printf 'customer\ttotal\n'
        seq "$rows" | awk '{ printf "Customer %d\t%d.50\n", $1, $1 }'
    } >"$work/table"
    empty_folder alone
    start=$(now)
    "$programs/recipe_mail_merge" "$form" "$work/table" "$work/alone" >"$work/alone.out"
    echo "One process, $rows rows: $(seconds "$start")"
    [ "$(written alone)" -eq "$rows" ] || fail "one process makes $(written alone) outputs"
}
