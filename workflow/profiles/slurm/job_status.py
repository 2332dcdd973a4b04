#!/usr/bin/env python3
"""Tells Snakemake what has become of a job of Slurm: prints `running`, `success` or `failed`.

The controller is asked first; when it has forgotten the job, the accounting is, on clusters that have one.
"""

import re
import subprocess
import sys
import time

RUNNING = {"PENDING", "CONFIGURING", "RUNNING", "COMPLETING", "SUSPENDED", "REQUEUED", "REQUEUE_HOLD", "RESIZING",
           "SIGNALING", "STAGE_OUT", "STOPPED", "RESV_DEL_HOLD", "SPECIAL_EXIT"}
TRIES = 5


def ask(*command: str) -> subprocess.CompletedProcess:
    try:
        return subprocess.run(command, capture_output=True, text=True, check=False)
    except FileNotFoundError as error:
        return subprocess.CompletedProcess(command, 127, "", str(error))


def state_of(job: str) -> str:
    """Returns the state of a job, `UNKNOWN` if Slurm knows no such job, or nothing if it does not answer."""
    controller = ask("scontrol", "--oneliner", "show", "job", job)
    found = re.search(r"\bJobState=(\w+)", controller.stdout)
    if found:
        return found.group(1)
    accounting = ask("sacct", "--allocations", "--noheader", "--parsable2", "--format=State", f"--jobs={job}")
    if accounting.stdout.strip():
        return accounting.stdout.split()[0]
    return "UNKNOWN" if "Invalid job id" in controller.stderr else ""


def main() -> None:
    job = sys.argv[1].split(";")[0]  # a cluster's name may follow
    for attempt in range(TRIES):
        state = state_of(job)
        if state not in ("", "UNKNOWN"):
            break
        time.sleep(attempt)
    if state == "COMPLETED":
        print("success")
    elif state in RUNNING or state == "":  # no answer is no reason to start the job again
        print("running")
    else:
        print("failed")


main()
