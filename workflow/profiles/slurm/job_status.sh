#!/bin/sh
# Tells Snakemake what has become of a job of Slurm: prints `running`, `success` or `failed`.
#
#   job_status.sh JOB
#
# The controller is asked first; when it has forgotten the job, the accounting is, on clusters that have one.

job=${1%%;*} # the name of a cluster may follow

# Prints the state of the job, `UNKNOWN` if there is no such job, or nothing if Slurm does not answer.
print_state() {
  answer=$(scontrol --oneliner show job "$job" 2>&1)
  state=$(printf '%s\n' "$answer" | sed -n 's/.*JobState=\([A-Z_]*\).*/\1/p')
  if [ -z "$state" ]; then
    state=$(sacct --allocations --noheader --parsable2 --format=State --jobs="$job" 2>/dev/null |
      sed -n '1s/\([A-Z_]*\).*/\1/p')
  fi
  if [ -z "$state" ]; then
    case $answer in *'Invalid job id'*) state=UNKNOWN ;; esac
  fi
  printf '%s\n' "$state"
}

# A job that was just submitted, or a controller that is busy, may take some seconds.
for pause in 1 2 3 4 0; do
  state=$(print_state)
  case $state in '' | UNKNOWN) sleep "$pause" ;; *) break ;; esac
done
case $state in
  COMPLETED) echo success ;;
  # No answer is no reason to start the job again.
  '' | PENDING | CONFIGURING | RUNNING | COMPLETING | SUSPENDED | REQUEUED | REQUEUE_HOLD | RESIZING | SIGNALING | \
    STAGE_OUT | STOPPED | RESV_DEL_HOLD | SPECIAL_EXIT) echo running ;;
  *) echo failed ;;
esac
