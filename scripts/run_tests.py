#!/usr/bin/env python3
"""Runs the tests of a build folder in parallel and counts them. scripts/test.sh calls it after the build.

Each test program is split into shards. A worker runs one shard at a time in a separate wine prefix, because the tests
use named objects that all programs of one wine server share. A program and its server mostly wait for each other, which
takes half the time if both run on the same processor, so each worker uses one processor. The counts come from the test
lists and results of the programs (--gtest_output=json). A test without a result has failed. The checks
(tests/NAME/NAME.sh) print their own counts in their last line.
"""
import argparse
import fnmatch
import json
import os
import queue
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

# The number of shards of each program. Shards of similar length keep all workers busy until the end.
PROGRAMS = {'stress_tests': 8, 'export_tests': 8, 'client_tests': 8, 'inside_tests': 1}
CONCURRENT_PROGRAMS = {'stress_tests'}  # their processes run at the same time
CHECKS = ['package', 'examples', 'schemas', 'access', 'completion', 'docs', 'licenses', 'debugger', 'header',
          'msvc', 'windows', 'json', 'report', 'runner']
TIME_LIMIT = 1800  # seconds for a shard or a check; a program that takes longer counts as hung
SPACE_FOR_FILES = 2 << 30  # bytes
PROCESSORS = os.sched_getaffinity(0)


class Job:
    """A shard of a test program, or a check, and its result."""

    processes = set()  # the running ones
    uses_all_processors = True

    def __init__(self, name, command, log, tests=()):
        self.name = name
        self.command = command
        self.log = log
        self.tests = tests
        self.passed = 0
        self.failures = [(test, 'it did not run') for test in tests or [name]]  # pairs of a name and the reason
        self.seconds = 0

    def run(self, environment):
        """Runs the program. Returns a description of the problem if it fails."""
        start = time.monotonic()
        try:
            with open(self.log, 'wb') as log:
                process = subprocess.Popen(self.command, stdout=log, stderr=log, stdin=subprocess.DEVNULL,
                                           env=environment, start_new_session=True)
            self.processes.add(process)
            exit_code = process.wait(TIME_LIMIT)
            return f'exit code {exit_code}' if exit_code else None
        except OSError as error:
            return f'no start: {error}'
        except subprocess.TimeoutExpired:
            kill(process)
            stop_server(environment)
            return f'no end after {TIME_LIMIT} s'
        finally:
            self.seconds = time.monotonic() - start

    def output(self):
        if not os.path.exists(self.log):
            return ''
        with open(self.log, errors='replace') as log:
            return log.read().replace('\r', '')


class Shard(Job):
    def __init__(self, build, program, tests, index, count, pattern):
        folder = os.path.join(build, 'tests', 'results')
        base = os.path.join(folder, f'{program}-{index + 1}')
        command = test_command(build, program, pattern, f'{base}.json')
        super().__init__(program, command, f'{base}.log', tests[index::count])
        self.results = f'{base}.json'
        self.uses_all_processors = program in CONCURRENT_PROGRAMS
        self.shard = {'GTEST_TOTAL_SHARDS': str(count), 'GTEST_SHARD_INDEX': str(index)}

    def execute(self, environment):
        remove(self.results)
        problem = self.run({**environment, **self.shard})
        results = read_results(self.results)
        self.failures = []
        for test in self.tests:
            if test not in results:
                self.failures.append((test, f'no result: {problem or "the program left it out"}'))
            elif results[test]:
                self.failures.append((test, results[test]))
            else:
                self.passed += 1
        if problem and not self.failures:
            self.failures.append((self.name, problem))
        if problem and not results:
            print(self.output()[-4000:])

    def done(self):
        """Returns how many tests have ended while the program runs. For display only; the results are authoritative."""
        return len(re.findall(r'^\[(?:       OK |  FAILED  )\] .*\(\d+ ms\)$', self.output(), re.M))


class Check(Job):
    def __init__(self, build, name):
        log = os.path.join(build, 'tests', 'results', f'{name}.log')
        super().__init__(name, ['bash', f'tests/{name}/{name}.sh'], log)

    def execute(self, environment):
        problem = self.run(environment)
        output = self.output()
        counts = re.search(r'^(\d+) passed, (\d+) failed$', output.rsplit('\n', 2)[-2] if '\n' in output else '')
        failed = int(counts.group(2)) if counts else 1
        self.passed = int(counts.group(1)) if counts else 0
        if problem and not failed:
            failed = 1
        if failed:
            print(output)
        self.failures = [(self.name, problem or 'see above')] * failed


def test_command(build, program, pattern, results):
    filters = [f'--gtest_filter={pattern}'] if pattern else []
    return ['scripts/wine.sh', os.path.join(build, 'bin', f'{program}.exe'), f'--gtest_output=json:{results}', *filters]


def read_json(path):
    try:
        with open(path) as file:
            return json.load(file)
    except (OSError, ValueError):
        return None


def tests_in(document):
    for suite in document['testsuites']:
        for test in suite['testsuite']:
            yield f'{suite["name"]}.{test["name"]}', test


def read_results(path):
    """Returns the tests that ran, each with its failures as one string, which is empty for a passed test."""
    document = read_json(path)
    if document is None:
        return {}
    return {name: '\n'.join(failure['failure'] for failure in test.get('failures', []))
            for name, test in tests_in(document) if test.get('result') == 'COMPLETED'}


def list_tests(build, program, pattern, environment):
    """Returns the names of the tests in the order in which they run, or None if the program does not list them."""
    base = os.path.join(build, 'tests', 'results', f'{program}-list')
    path = f'{base}.json'
    remove(path)
    # Not to the null device: a Windows program writes each character separately to a device, which takes seconds.
    with open(f'{base}.log', 'wb') as log:
        subprocess.run([*test_command(build, program, pattern, path), '--gtest_list_tests'], env=environment,
                       stdout=log, stderr=log, stdin=subprocess.DEVNULL, timeout=TIME_LIMIT)
    document = read_json(path)
    return None if document is None else [name for name, _ in tests_in(document)]


def kill(process):
    """Kills a process and all processes that it started."""
    try:
        os.killpg(process.pid, signal.SIGKILL)
    except ProcessLookupError:
        pass
    process.wait()


def remove(path):
    if os.path.exists(path):
        os.remove(path)


def stop_server(environment):
    prefix = {**environment, 'WINEPREFIX': environment['ZOTDAM_WINEPREFIX']}
    subprocess.run(['wineserver', '--kill'], env=prefix, stderr=subprocess.DEVNULL)


def folder_for_files():
    """Returns a new folder for the files of the tests, in memory if there is enough space."""
    memory = '/dev/shm'
    has_room = os.access(memory, os.W_OK) and shutil.disk_usage(memory).free >= SPACE_FOR_FILES
    return tempfile.mkdtemp(prefix='zotdam-tests-', dir=memory if has_room else None)


class Progress:
    """Shows how many tests have ended: in one line of a terminal, otherwise in a new line after each job."""

    def __init__(self, jobs):
        self.jobs = jobs
        self.total = {}
        for job in jobs:
            self.total[job.name] = self.total.get(job.name, 0) + len(job.tests)
        self.ended = dict.fromkeys(self.total, 0)
        self.running = []
        self.lock = threading.Lock()
        self.is_terminal = sys.stderr.isatty()

    def begin(self, job):
        with self.lock:
            self.running.append(job)

    def end(self, job):
        with self.lock:
            self.running.remove(job)
            self.ended[job.name] += len(job.tests)
            if not self.is_terminal:
                outcome = f'{job.passed} passed' + (f', {len(job.failures)} failed' if job.failures else '')
                count = f' ({self.ended[job.name]} of {self.total[job.name]})' if self.total[job.name] else ''
                print(f'== {job.name}{count}: {outcome}, {job.seconds:.0f} s', file=sys.stderr, flush=True)

    def show(self):
        if not self.is_terminal:
            return
        with self.lock:
            states = []
            for name in dict.fromkeys(job.name for job in self.running):
                done = self.ended[name] + sum(job.done() for job in self.running if job.name == name and job.tests)
                states.append(f'{name} {done} of {self.total[name]}' if self.total[name] else name)
            print('\r\033[K' + ', '.join(states), end='', file=sys.stderr, flush=True)

    def clear(self):
        if self.is_terminal:
            print('\r\033[K', end='', file=sys.stderr, flush=True)


class Worker:
    """Runs tasks one after another in a separate wine prefix."""

    def __init__(self, index, files):
        folder = os.path.join(files, str(index))
        os.mkdir(folder)
        self.environment = {**os.environ, 'ZOTDAM_WINEPREFIX': os.path.abspath(f'build/wine-{index + 1}'),
                            'ZOTDAM_TEST_FILES': folder}
        self.processor = {sorted(PROCESSORS)[index % len(PROCESSORS)]}

    def run(self, waiting):
        """Calls the waiting tasks in the current thread."""
        while True:
            try:
                task = waiting.get_nowait()
            except queue.Empty:
                return
            self.start_server()
            task(self)

    def start_server(self):
        """Starts the wine server on the processor of the worker if it does not run: a task may have ended it.

        Without programs, it ends after a minute.
        """
        self.use_processors(self.processor)
        subprocess.run(['bash', '-c', 'source scripts/common.sh && make_prefix && wineserver --persistent=60'],
                       env=self.environment, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL)

    @staticmethod
    def use_processors(processors):
        """Selects the processors of the current thread and of the processes that it starts."""
        os.sched_setaffinity(0, processors)

    def close(self):
        if os.path.exists(self.environment['ZOTDAM_WINEPREFIX']):
            stop_server(self.environment)


class Workers:
    def __init__(self, count, files):
        self.workers = [Worker(index, files) for index in range(count)]

    def run(self, tasks, while_running=lambda: None):
        """Calls each task with the worker that runs it. Returns after the last one."""
        waiting = queue.SimpleQueue()
        for task in tasks:
            waiting.put(task)
        threads = [threading.Thread(target=worker.run, args=(waiting,), daemon=True) for worker in self.workers]
        for thread in threads:
            thread.start()
        while any(thread.is_alive() for thread in threads):
            while_running()
            time.sleep(0.2)

    def close(self):
        for process in Job.processes:
            if process.poll() is None:
                kill(process)
        for worker in self.workers:
            worker.close()


def collect_lists(build, pattern, workers):
    lists = {}

    def task(program):
        return lambda worker: lists.update({program: list_tests(build, program, pattern, worker.environment)})
    workers.run([task(program) for program in PROGRAMS])
    return {program: lists.get(program) for program in PROGRAMS}


def make_jobs(build, lists, checks, pattern):
    jobs = [Check(build, name) for name in checks]
    for program, tests in lists.items():
        count = min(PROGRAMS[program], len(tests))
        jobs += [Shard(build, program, tests, index, count, pattern) for index in range(count)]
    return jobs


def run_jobs(jobs, workers):
    progress = Progress(jobs)

    def task(job):
        def run(worker):
            worker.use_processors(PROCESSORS if job.uses_all_processors else worker.processor)
            progress.begin(job)
            job.execute(worker.environment)
            progress.end(job)
        return run
    workers.run([task(job) for job in jobs], progress.show)
    progress.clear()


def report(jobs, missing_programs):
    failures = [failure for job in jobs for failure in job.failures]
    failures += [(program, 'the program does not list its tests') for program in missing_programs]
    for name, reason in failures:
        print(f'FAILED: {name}\n{reason}\n')
    passed = sum(job.passed for job in jobs)
    print(f'{passed} passed, {len(failures)} failed')
    return passed > 0 and not failures


def parse_arguments():
    parser = argparse.ArgumentParser(prog='scripts/test.sh [PRESET]', add_help=False)
    parser.add_argument('--build', required=True, help=argparse.SUPPRESS)
    parser.add_argument('--checks', action='store_true', help=argparse.SUPPRESS)
    parser.add_argument('--filter', metavar='PATTERN')
    parser.add_argument('--list', action='store_true')
    parser.add_argument('--jobs', type=int, default=max(2, len(PROCESSORS)), metavar='N')
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    os.makedirs(os.path.join(arguments.build, 'tests', 'results'), exist_ok=True)
    checks = [name for name in CHECKS if arguments.checks and fnmatch.fnmatchcase(name, arguments.filter or '*')]
    signal.signal(signal.SIGTERM, signal.default_int_handler)
    files = folder_for_files()
    workers = Workers(arguments.jobs, files)
    try:
        lists = collect_lists(arguments.build, arguments.filter, workers)
        missing = [program for program, tests in lists.items() if tests is None]
        lists = {program: tests for program, tests in lists.items() if tests is not None}
        if arguments.list:
            print('\n'.join([test for tests in lists.values() for test in tests] + checks))
            return 1 if missing else 0
        jobs = make_jobs(arguments.build, lists, checks, arguments.filter)
        run_jobs(jobs, workers)
        return 0 if report(jobs, missing) else 1
    except KeyboardInterrupt:
        return 130
    finally:
        workers.close()
        shutil.rmtree(files, ignore_errors=True)


if __name__ == '__main__':
    sys.exit(main())
