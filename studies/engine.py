"""Has Dask execute a tree of variants: depth first, with few states kept at a time.

Every branch of the tree is a task whose result, a stack, stays on the workers; what goes on from it
depends on that task, so that Dask keeps data where they are used, spills them to disk and makes
them anew where a worker was lost. The outcomes of variants come back as they are done.
"""
import collections
import dataclasses
import itertools
import os
import queue
import signal
import socket
import time
import uuid

from distributed import KilledWorker

from . import cluster, worker
from .errors import Cut, ExitStatus, StudyError
from .worker import Outcome, VariantError

STRIKES = 2  # so often a variant may take its worker with it
TRIES = 20  # of a task whose workers were lost for other reasons
BATCH_SECONDS = 0.5  # what a task of several quick variants takes
BATCH_SECONDS_A_THREAD = 0.02  # of many workers, so that the scheduler keeps up with them
BATCH_MOST = 50
GRACE = 5.0  # after which a worker that does not listen to its time limit is replaced
TICK = 0.25
LONELY_SECONDS = 300  # which a study waits for workers when all are gone
REPLACE_SECONDS = 10  # after which it starts new ones, where it may


@dataclasses.dataclass(eq=False)
class _Task:
    """A branch that is made, or some variants that end on one."""

    branch: object  # what it hangs on, or what it makes
    numbers: tuple = ()  # the variants that end here; none for a branch
    name: str = ""
    future: object = None
    strikes: int = 0
    tries: int = 0
    begun: tuple = ()  # (when, what, variant) where a worker has told so


@dataclasses.dataclass
class _Held:
    """A branch whose state is kept until everything that hangs on it is done."""

    task: _Task
    left: int
    own_bytes: int = 0


class Engine:
    """Executes a tree's variants on a Dask client."""

    def __init__(self, client, job, study, tree, names_of, most_bytes, times):
        """`names_of(number)`: (file, name) pairs of a variant. `most_bytes`: what kept states take."""
        self.client, self.job, self.study, self.tree = client, job, study, tree
        self.names_of, self.most_bytes, self.times = names_of, most_bytes, times
        self.events = queue.Queue()
        self.ready = []  # taken from its end: the deepest first
        self.tasks = {}  # in flight, by name
        self.held = {}  # branch to _Held
        self.counter = itertools.count(1)
        self.run_name = uuid.uuid4().hex[:12]
        self.cut = 0  # the number of a signal
        self.running = {}  # (worker, thread) to (task name, variant, what, since, pid, host)
        self.strikes = collections.Counter()  # by variant, or by branch
        self.blamed = {}  # a lost worker to (task name, variant) of what ran there
        self.known_threads = (0, -1.0)
        self.lonely_since = self.replaced = time.monotonic()
        job.topic = "zelmo-study-" + self.run_name
        self.client.subscribe_topic(job.topic, self._told)
        self.job_future = client.submit(worker.same, job, key=f"study-{self.run_name}", pure=False)
        self.most_held = 0

    def _told(self, event):
        self.events.put(("begin", event[1]))

    def stop(self, signal_number):
        """Ends the study at the next opportunity; may be called by a signal's handler."""
        self.cut = signal_number
        self.events.put(("stop", None))

    def threads(self):
        """How many tasks run at once; 0 without workers. Asked for once a second at most."""
        if time.monotonic() - self.known_threads[1] > 1.0:
            workers = self.client.scheduler_info()["workers"].values()
            self.known_threads = (sum(each["nthreads"] for each in workers), time.monotonic())
        return self.known_threads[0]

    def outcomes(self):
        """Yields lists of outcomes as they come, and empty ones now and then. Raises Cut."""
        self._open(self.tree.root)
        while self.ready or self.tasks:
            if self.cut:
                raise Cut(0, 0, self.cut)
            if self.client.status != "running":
                raise StudyError("the scheduler is gone: the same command goes on", ExitStatus.OTHER)
            threads = self.threads()
            self._look_for_workers(threads)
            self._submit(max(threads, 1))
            found = self._listen()
            self._replace_stuck(found)
            yield found

    def _look_for_workers(self, threads):
        """Waits a while for workers when there are none, and starts new ones where the study may."""
        now = time.monotonic()
        if threads:
            self.lonely_since = self.replaced = now
        elif now - self.lonely_since > LONELY_SECONDS:
            raise StudyError("the scheduler has no workers any more: start some, and the same command goes on",
                             ExitStatus.OTHER)
        elif now - self.replaced > REPLACE_SECONDS:
            self.replaced = now
            cluster.replace_workers(self.client)

    # Handing out

    def _open(self, branch):
        """Everything that hangs on a branch becomes ready."""
        for each in branch.branches:
            self.ready.append(_Task(each))
        if branch.ends:
            self.ready.append(_Task(branch, tuple(branch.ends)))

    def _submit(self, threads):
        while self.ready and len(self.tasks) < 2 * threads:
            task = self.ready.pop()
            if task.numbers:
                task = self._batch(task, threads)
            elif self._is_too_much(task):
                self.ready.append(task)
                if not self._prefer_ends():
                    return
                continue
            self._send(task)

    def _prefer_ends(self):
        """Puts variants that end on a state that is there in front of what makes another one."""
        for i in range(len(self.ready) - 1, -1, -1):
            if self.ready[i].numbers:
                self.ready.append(self.ready.pop(i))
                return True
        return False

    def _batch(self, task, threads):
        """Some of the variants of a task, so that a task is not over before it is known of."""
        numbers = task.numbers
        if len(numbers) == 1:
            return task
        steps = range(task.branch.steps + 1, self.tree.lengths[numbers[0]] + 1)
        each = sum(self.times.step(n) for n in steps) + self.times.variant()
        known = self.times.rest[1] > 0
        seconds = max(BATCH_SECONDS, BATCH_SECONDS_A_THREAD * threads)
        count = int(seconds / each) if each > 0 and known else 1
        count = max(1, min(count, BATCH_MOST, len(numbers) // (2 * threads) or 1))
        if len(numbers) > count:
            self.ready.append(_Task(task.branch, numbers[count:]))
        return _Task(task.branch, numbers[:count], strikes=task.strikes, tries=task.tries)

    def _is_too_much(self, task):
        """Whether another state would not fit the bound while others can still be let go."""
        if not self.tasks or not self.held:
            return False
        sizes = [each.own_bytes for each in self.held.values()]
        making = sum(1 for each in self.tasks.values() if not each.numbers)
        return sum(sizes) + (making + 1) * max(sizes) > self.most_bytes

    def _send(self, task):
        task.name = f"{'variants' if task.numbers else 'steps'}-{self.run_name}-{next(self.counter)}"
        task.begun = ()
        above = task.branch if task.numbers else task.branch.parent
        parent = self._parent_future(above)
        if task.numbers:
            batch = [(n, self.study.variants[n - 1], self.names_of(n)) for n in task.numbers]
            arguments = (worker.finish, self.job_future, parent, batch, task.name)
        else:
            variant = self.study.variants[task.branch.variant - 1]
            arguments = (worker.grow, self.job_future, parent, variant, task.branch.steps, task.name)
        task.future = self.client.submit(*arguments, key=task.name, pure=False)
        self.tasks[task.name] = task
        if task.numbers:
            waited = task.future
        else:
            # What the study learns of a state travels by itself, the state stays.
            waited = self.client.submit(worker.told, task.future, key=task.name + "-told", pure=False)
        name = task.name
        waited.add_done_callback(lambda future: self.events.put(("done", (name, future))))

    def _parent_future(self, branch):
        if branch.parent is None:
            return None
        future = self.held[branch].task.future
        if future.status in ("error", "cancelled"):
            future.retry()
        return future

    # Taking in

    def _listen(self):
        """Waits for news; what came of variants."""
        found = []
        try:
            event = self.events.get(timeout=TICK)
            while True:
                self._take(event, found)
                event = self.events.get_nowait()
        except queue.Empty:
            return found

    def _take(self, event, found):
        kind, told = event
        if kind == "begin" and told["task"] in self.tasks:
            self.running[told["worker"], told["thread"]] = (
                told["task"], told["variant"], told["what"], time.monotonic(), told["pid"], told["host"])
        elif kind == "done":
            name, future = told
            task = self.tasks.pop(name, None)
            if task is not None:
                self._finish(task, future, found)
                self._forget(name)

    def _forget(self, name):
        self.running = {key: each for key, each in self.running.items() if each[0] != name}

    def _finish(self, task, future, found):
        if future.status == "finished":
            try:
                self._take_result(task, future.result(timeout=60), found)
                return
            except Exception as error:  # lost on its way here
                problem = error
        else:
            problem = future.exception(timeout=60) if future.status == "error" else None
        if isinstance(problem, (VariantError, MemoryError)) and not isinstance(problem, KilledWorker):
            self._fail(task, worker.one_line(problem) or "out of memory", found)
        elif isinstance(problem, KilledWorker) or problem is None or task.tries < 3:
            self._again(task, problem, found)
        else:
            self._fail(task, f"{type(problem).__name__}: {worker.one_line(problem)}", found)

    def _take_result(self, task, result, found):
        if task.numbers:
            for outcome in result:
                self.times.add_outcome(outcome)
            found.extend(result)
            self._let_go(task.branch, len(task.numbers))
            return
        own_bytes, steps = result
        self.times.add_steps(steps)
        branch = task.branch
        self.held[branch] = _Held(task, len(branch.branches) + len(branch.ends), own_bytes)
        self.most_held = max(self.most_held, sum(each.own_bytes for each in self.held.values()))
        self._let_go(branch.parent, 1)
        self._open(branch)

    def _let_go(self, branch, count):
        """So many of what hangs on a branch are done; its state goes with the last."""
        held = self.held.get(branch)
        if held is not None:
            held.left -= count
            if held.left <= 0:
                held.task.future.release()
                del self.held[branch]

    def _fail(self, task, reason, found):
        """All variants that a task stands for get an error in their place."""
        if task.numbers:
            found.extend(Outcome(number, error=reason) for number in task.numbers)
            self._let_go(task.branch, len(task.numbers))
        else:
            found.extend(Outcome(number, error=reason) for number in task.branch.below())
            self._let_go(task.branch.parent, 1)

    def _again(self, task, problem, found):
        """A task whose worker was lost is sent again, each variant by itself. Who was running there
        is to blame, and is given up when it happens again."""
        address = problem.last_worker.address if isinstance(problem, KilledWorker) else None
        blamed = self._blamed(address)
        guilty = [variant for name, variant in blamed if name == task.name]
        task.tries += 1
        for number in task.numbers or (0,):
            key = number or task.branch
            if number in guilty or (address and not blamed):
                self.strikes[key] += 1
            single = _Task(task.branch, (number,) if number else (), tries=task.tries)
            if self.strikes[key] >= STRIKES or task.tries > TRIES:
                self._fail(single, f"its worker was lost {self.strikes[key] or task.tries} times while it ran: killed "
                           "from outside, crashed, or out of its memory", found)
            else:
                self.ready.append(single)

    def _blamed(self, address):
        """What ran on a worker when it was lost, as (task name, variant)."""
        lost = [key for key in self.running if key[0] == address]
        if lost:
            self.blamed[address] = [self.running.pop(key)[:2] for key in lost]
        return self.blamed.get(address, [])

    # Workers that do not listen

    def _replace_stuck(self, found):
        if not self.job.time_limit:
            return
        longest = self.job.time_limit + GRACE
        for (address, _), (name, variant, _, since, pid, host) in list(self.running.items()):
            if time.monotonic() - since < longest or name not in self.tasks:
                continue
            task = self.tasks.pop(name)
            self._forget(name)
            task.future.cancel()
            reason = f"it took longer than the limit of {self.job.time_limit:g} s, and its worker was replaced"
            for number in task.numbers or (0,):
                single = _Task(task.branch, (number,) if number else ())
                if number in (variant, 0):
                    self._fail(single, reason, found)
                else:
                    self.ready.append(single)
            _end_worker(self.client, address, pid, host)

    def close(self):
        """Lets go of everything on the workers."""
        try:
            self.client.unsubscribe_topic(self.job.topic)
            futures = [task.future for task in self.tasks.values()]
            futures += [held.task.future for held in self.held.values()] + [self.job_future]
            self.client.cancel(futures, force=True)
        except Exception:  # the scheduler may be gone
            pass


def _end_worker(client, address, pid, host):
    """Ends a worker's process whatever it does; its nanny starts another one."""
    if host == socket.gethostname():
        try:
            os.kill(pid, signal.SIGKILL)
            return
        except OSError:
            pass
    try:
        client.restart_workers([address], timeout=30)
    except Exception:  # it may be gone already
        pass
