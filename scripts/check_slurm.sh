#!/usr/bin/env bash
# Runs the workflow on a cluster with Slurm that lasts as long as this script:
#
#   scripts/check_slurm.sh GENOME [SETTING=VALUE]...
#
# The cluster is this machine: two nodes of one core, with their controller and munge in a temporary folder. The
# genome is searched in ranges. One job is cancelled on the way, and the run is killed and started again; then four
# genomes are searched in bundles of two. Each report is compared with that of one run. Settings are those of the
# workflow, options without quotes. It needs root, a build in build/, and the Debian packages munge, slurm-wlm and snakemake.
set -euo pipefail

source "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/usage.sh"
if [ $# -lt 1 ] || [ ! -f "$1" ]; then refuse_arguments; fi
genome=$(readlink -f -- "$1")
shift
cd -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")/.."
project=$PWD
readonly genome project
for program in munged slurmctld slurmd snakemake build/quorix build/quorix-tools; do
  command -v "$program" >/dev/null || { echo "check_slurm: $program is missing" >&2 && exit 1; }
done
[ "$(id -u)" -eq 0 ] || { echo "check_slurm: slurmd needs root" >&2 && exit 1; }

scratch=$(mktemp --directory)
daemons=()
readonly scratch
# Ends what this script has started, and nothing else.
clean_up() {
  kill "${daemons[@]}" 2>/dev/null || true
  wait
  rm -rf -- "$scratch"
}
trap clean_up EXIT

# start NAME WORD...: a daemon in the foreground, with its output in a file.
start() {
  "${@:2}" >"$scratch/$1.out" 2>&1 &
  daemons+=($!)
}

# within SECONDS COMMAND...: waits until the command succeeds.
within() {
  local deadline=$((SECONDS + $1))
  until "${@:2}" >/dev/null 2>&1; do
    if [ "$SECONDS" -ge "$deadline" ]; then
      echo "check_slurm: in vain: ${*:2}" >&2
      tail --lines=20 "$scratch"/*.out "$scratch"/*.log >&2
      return 1
    fi
    sleep 0.2
  done
}

start_slurm() {
  chmod 755 "$scratch"
  mkdir "$scratch"/{munge,state,spool1,spool2}
  mungekey --create --keyfile "$scratch/munge/key"
  start munged munged --foreground --force --socket="$scratch/munge/socket" --key-file="$scratch/munge/key" \
    --log-file="$scratch/munge/log" --pid-file="$scratch/munge/pid" --seed-file="$scratch/munge/seed"
  within 20 test -S "$scratch/munge/socket"
  cat >"$scratch/slurm.conf" <<END
ClusterName=check
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=16817
AuthType=auth/munge
AuthInfo=socket=$scratch/munge/socket
CredType=cred/munge
SlurmUser=root
SlurmdUser=root
StateSaveLocation=$scratch/state
SlurmdSpoolDir=$scratch/spool%n
SlurmctldPidFile=$scratch/slurmctld.pid
SlurmdPidFile=$scratch/slurmd.%n.pid
SlurmctldLogFile=$scratch/slurmctld.log
SlurmdLogFile=$scratch/slurmd.%n.log
SlurmctldParameters=enable_configless
SlurmdParameters=config_overrides
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/filetxt
JobCompLoc=$scratch/jobs.txt
SelectType=select/cons_tres
SelectTypeParameters=CR_Core_Memory
SchedulerParameters=sched_interval=1,defer_batch
ReturnToService=2
NodeName=1 NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 Port=16821 CPUs=1 RealMemory=4000
NodeName=2 NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 Port=16822 CPUs=1 RealMemory=4000
PartitionName=all Nodes=1,2 Default=YES MaxTime=INFINITE State=UP
END
  export SLURM_CONF=$scratch/slurm.conf
  start slurmctld slurmctld -D
  start slurmd1 slurmd -D -N 1
  start slurmd2 slurmd -D -N 2
  # shellcheck disable=SC2016  # the inner shell expands
  within 30 bash -c '[ "$(sinfo --noheader --Node --format=%T | grep --count idle)" -eq 2 ]'
  sinfo --Node --long
}

# workflow WORD...: a run, with the settings of the script and further words.
workflow() {
  snakemake --snakefile "$project/workflow/Snakefile" --profile "$project/workflow/profiles/slurm" --nocolor \
    --latency-wait 5 --configfile "$scratch/settings.yaml" "$@"
}

is_searching() { squeue --noheader --states=RUNNING --format=%j | grep --quiet quorix-search; }
waits_for() { ! squeue --noheader --format=%T | grep --quiet .; }

# expect_one_run FILE FOLDER NAME: the report of a genome is that of one run.
expect_one_run() {
  local folder=$scratch/one_run
  mkdir -- "$folder"
  ln -s -- "$1" "$folder"
  (cd -- "$folder" && "$project/build/quorix" "${options[@]}" "${1##*/}" "$3.report" 2>/dev/null)
  cmp -- "$folder/$3.report" "$2/$3/$3.report"
  echo "$3: the report is that of one run, $(stat --format=%s -- "$2/$3/$3.report") bytes"
  rm -r -- "$folder"
}

options=()
for setting in "$@"; do
  if [[ $setting == options=* ]]; then read -r -a options <<<"${setting#options=}"; fi
done

start_slurm
mkdir "$scratch/the run" "$scratch/many"
cd -- "$scratch/the run"
printf '{"threads": 1, "min_range_bases": 1}\n' >"$scratch/settings.yaml"
settings=("genomes={genome: ${genome@Q}}" "$@")

echo "== A run that is killed, and a job that is cancelled"
setsid bash -c "$(declare -f workflow); $(declare -p project scratch); workflow --config \"\$@\"" workflow \
  "${settings[@]}" >"$scratch/first.out" 2>&1 &
run=$!
within 120 is_searching
job=$(squeue --noheader --states=RUNNING --format='%i %j' | awk '/quorix-search/ { print $1; exit }')
squeue
echo "scancel $job"
scancel "$job"
within 120 grep --quiet 'Trying to restart job' "$scratch/first.out"
within 120 is_searching
kill -KILL -- "-$run" # of a session of its own
wait "$run" 2>/dev/null || true
grep -e 'Trying to restart job' -e 'Submitted .* external jobid' "$scratch/first.out"
echo "Killed with these jobs in the queue, and these parts:"
squeue
ls results/genome/work

echo "== The same again"
scancel --user="$(id -un)"
within 60 waits_for
workflow --unlock --config "${settings[@]}" 2>&1 | tail --lines=1
began=$SECONDS
workflow --config "${settings[@]}" >"$scratch/second.out" 2>&1 || { cat "$scratch/second.out" && exit 1; }
grep -e 'steps (100%) done' "$scratch/second.out"
echo "$((SECONDS - began)) s"

echo "== Bundles of genomes"
for name in one two three four; do ln -s -- "$genome" "$scratch/many/$name.${genome##*.}"; done
workflow --cores 1 --groups ranges=bundle search=bundle merge=bundle --group-components bundle=2 \
  --config "genomes=$scratch/many" results=many "$@" ranges=1 >"$scratch/third.out" 2>&1 ||
  { cat "$scratch/third.out" && exit 1; }
grep -e 'steps (100%) done' "$scratch/third.out"

echo "== What Slurm has done"
sed 's/ UserId=.*JobState=/ JobState=/; s/ UserId=[^ ]*//; s/ GroupId=[^ ]*//; s/ WorkDir=.*ReservationName=/ /
  s/ Account=.*//' "$scratch/jobs.txt"

echo "== One run"
expect_one_run "$genome" results genome
for name in one two three four; do expect_one_run "$scratch/many/$name.${genome##*.}" many "$name"; done
