"""A cluster that works off a list of jobs: workers that take one job after the other, and one disk that they share.

A job has four phases: it waits for its worker to be ready, reads its input from the disk, computes, and writes its
report to the disk. The disk gives all who use it the same rate: what one worker can take, or the share of each if
they ask for more than the disk has. Times are in seconds, data in bytes.
"""

import dataclasses
import heapq

PHASES = ("overhead", "reading", "computing", "writing", "idle")


@dataclasses.dataclass(frozen=True)
class Job:
    overhead: float
    read_bytes: float
    compute: float
    write_bytes: float


@dataclasses.dataclass(frozen=True)
class Disk:
    bytes_per_second: float
    bytes_per_second_of_a_worker: float

    def rate(self, users):
        """Bytes per second for each of some users."""
        return min(self.bytes_per_second_of_a_worker, self.bytes_per_second / users)


@dataclasses.dataclass(frozen=True)
class Result:
    workers: int
    seconds: float  # until the last job is done
    jobs: int  # that were done
    moved_bytes: float
    shares: dict  # of the time of all workers, by phase: they sum up to 1


class _SharedDisk:
    """Who uses the disk, and when the next one is done. Service is what each user has got since the beginning, had
    it been there all the time: so the order in which users finish does not change when others come or go."""

    def __init__(self, disk):
        self.disk = disk
        self.users = []  # (service at which it is done, worker)
        self.service = 0.0
        self.now = 0.0
        self.moved = 0.0

    def advance(self, now):
        if self.users:
            got = (now - self.now) * self.disk.rate(len(self.users))
            self.service += got
            self.moved += got * len(self.users)
        self.now = now

    def add(self, worker, size):
        heapq.heappush(self.users, (self.service + size, worker))

    def next_end(self):
        if not self.users:
            return float("inf")
        left = max(self.users[0][0] - self.service, 0.0)
        return self.now + left / self.disk.rate(len(self.users))

    def take_done(self):
        return heapq.heappop(self.users)[1]


def run(jobs, workers, disk):
    """Lets `workers` work off `jobs`, a list, in its order. Returns a Result."""
    shared = _SharedDisk(disk)
    timers = []  # (when, worker) of workers that do not use the disk
    states = {}  # worker -> [job, number of its phase, when that began]
    spent = dict.fromkeys(PHASES, 0.0)
    todo = iter(jobs)
    done = 0
    now = 0.0

    def begin(worker, phase):
        """Begins a phase of the worker's job, or that of its next job."""
        nonlocal done
        if phase == 4:
            done += 1
            phase = 0
        job = states[worker][0] if phase else next(todo, None)
        if job is None:
            del states[worker]
            return
        states[worker] = [job, phase, now]
        if phase in (0, 2):
            heapq.heappush(timers, (now + (job.compute if phase else job.overhead), worker))
        else:
            shared.add(worker, job.read_bytes if phase == 1 else job.write_bytes)

    for worker in range(min(workers, len(jobs))):
        states[worker] = [None, 0, 0.0]
        begin(worker, 0)
    while states:
        timer = timers[0][0] if timers else float("inf")
        is_disk = shared.next_end() <= timer
        now = min(shared.next_end(), timer)
        shared.advance(now)
        worker = shared.take_done() if is_disk else heapq.heappop(timers)[1]
        _, phase, since = states[worker]
        spent[PHASES[phase]] += now - since
        begin(worker, phase + 1)

    spent["idle"] = max(workers * now - sum(spent.values()), 0.0)
    shares = {phase: seconds / (workers * now) for phase, seconds in spent.items()}
    return Result(workers, now, done, shared.moved, shares)
