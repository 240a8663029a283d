# shellcheck shell=bash disable=SC2034,SC2154 # part of scripts/check-scaling: the mail merge under GNU parallel.

# The task file is what the page "Scaling out" shows.
make_parallel_tasks() {
    local each=$(((rows + 39) / 40)) # rows of a task
    cat >"$work/parallel.sh" <<SCRIPT
seq 1 $each $rows | parallel --will-cite -j $cores --joblog $work/joblog --resume-failed \
    '$programs/recipe_mail_merge $form $work/table $work/parallel {} \$(({} + $each - 1))'
SCRIPT
}

# kill_parallel_half_way: starts the tasks in a session of their own, so that nothing else is killed.
kill_parallel_half_way() {
    local group
    setsid sh "$work/parallel.sh" >"$work/parallel.out" 2>&1 &
    group=$!
    wait_for 600 has_half parallel || fail "parallel does not come to its half"
    kill -KILL "-$group"
    wait "$group" 2>/dev/null || true
}

check_parallel() {
    local start killed logged
    make_parallel_tasks
    empty_folder parallel
    start=$(now)
    sh "$work/parallel.sh" >"$work/parallel.out" || fail "parallel: $(tail -n 3 "$work/parallel.out")"
    echo "GNU parallel, $cores at a time: $(seconds "$start")"
    check_outputs parallel

    empty_folder parallel
    rm "$work/joblog"
    kill_parallel_half_way
    killed=$(written parallel)
    [ "$killed" -lt "$rows" ] || fail "parallel was over before it was killed"
    logged=$(($(wc -l <"$work/joblog") - 1))
    sh "$work/parallel.sh" >"$work/parallel.out" || fail "parallel does not resume"
    check_outputs parallel
    echo "GNU parallel: killed with $killed of $rows rows, $logged tasks in its log; resumed, all there"
}
