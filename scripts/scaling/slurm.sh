# shellcheck shell=bash disable=SC2034,SC2154 # part of scripts/check-scaling: the mail merge under Slurm.
slurm=$work/cluster
export SLURM_CONF="$slurm/slurm.conf"
pids=

# The task file is what the page "Scaling out" shows.
make_slurm_tasks() {
    local each=$(((rows + 9) / 10)) # rows of a task: starting one takes Slurm seconds
    cat >"$work/slurm.sh" <<SCRIPT
#!/bin/sh
#SBATCH --array=1-$(((rows + each - 1) / each)) --ntasks=1 --cpus-per-task=1 --output=$work/slurm-%a.out
last=\$((SLURM_ARRAY_TASK_ID * $each))
exec $programs/recipe_mail_merge $form $work/table $work/slurm \$((last - $each + 1)) \$last
SCRIPT
}

# configure_slurm: one node, with keys, sockets, ports and state of its own.
configure_slurm() {
    mkdir -p "$slurm/state" "$slurm/spool"
    chmod 0700 "$slurm"
    head -c 1024 /dev/urandom >"$slurm/key"
    chmod 0600 "$slurm/key"
    cat >"$SLURM_CONF" <<CONF
ClusterName=scaling
SlurmctldHost=$(hostname -s)
SlurmUser=$(id -un)
SlurmctldPort=16817
SlurmdPort=16818
AuthType=auth/munge
AuthInfo=socket=$slurm/munge.socket
CredType=cred/munge
StateSaveLocation=$slurm/state
SlurmdSpoolDir=$slurm/spool
SlurmctldPidFile=$slurm/slurmctld.pid
SlurmdPidFile=$slurm/slurmd.pid
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
ReturnToService=2
NodeName=$(hostname -s) CPUs=$cores
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE
CONF
}

has_idle_node() {
    sinfo -h -o %t 2>/dev/null | grep -q idle
}

start_slurm() {
    trap stop_slurm EXIT
    munged --foreground --force --key-file="$slurm/key" --socket="$slurm/munge.socket" \
        --pid-file="$slurm/munge.pid" --log-file="$slurm/munge.log" --seed-file="$slurm/seed" 2>/dev/null &
    pids="$pids $!"
    wait_for 10 test -S "$slurm/munge.socket" || fail "no munge: $(tail -n 3 "$slurm/munge.log")"
    slurmctld -D >"$slurm/slurmctld.log" 2>&1 &
    pids="$pids $!"
    slurmd -D >"$slurm/slurmd.log" 2>&1 &
    pids="$pids $!"
    wait_for 30 has_idle_node || fail "no node comes up: $(tail -n 3 "$slurm"/*.log)"
}

stop_slurm() {
    # shellcheck disable=SC2086 # the numbers are words
    [ -z "$pids" ] || kill $pids 2>/dev/null || true
    wait
}

# is_over JOB: none of its tasks is queued or runs.
is_over() {
    local job=$1
    [ -z "$(squeue -h -j "$job" 2>/dev/null)" ]
}

kill_slurm_half_way() {
    local job
    job=$(sbatch --parsable "$work/slurm.sh")
    wait_for 600 has_half slurm || fail "slurm does not come to its half"
    scancel --signal=KILL --full "$job"
    scancel "$job"
    wait_for 60 is_over "$job" || fail "slurm does not end its tasks"
}

check_slurm() {
    local start killed
    make_slurm_tasks
    configure_slurm
    start_slurm
    empty_folder slurm
    start=$(now)
    sbatch --wait "$work/slurm.sh" >"$work/sbatch.out" || fail "slurm: $(cat "$work/sbatch.out")"
    echo "Slurm, a job array on $cores processors: $(seconds "$start")"
    check_outputs slurm

    empty_folder slurm
    kill_slurm_half_way
    killed=$(written slurm)
    [ "$killed" -lt "$rows" ] || fail "slurm was over before it was killed"
    sbatch --wait "$work/slurm.sh" >"$work/sbatch.out" || fail "slurm does not resume"
    check_outputs slurm
    echo "Slurm: killed with $killed of $rows rows; submitted again, all there"
}
