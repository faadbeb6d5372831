"""Tests of the test runner: every test is counted once, however its program ends."""
import json
import os
import sys
import tempfile
import unittest

import run_tests

TESTS = ['A.One', 'A.Two', 'B.One', 'B.Two', 'B.Three']


def result(name, **more):
    return {'name': name, 'result': 'COMPLETED', **more}


def document(*tests):
    """Returns the results that GoogleTest writes for these tests of suite A and for all tests of suite B."""
    passed = [result(name) for name in ('One', 'Two', 'Three')]
    return json.dumps({'testsuites': [{'name': 'A', 'testsuite': list(tests)}, {'name': 'B', 'testsuite': passed}]})


class ShardTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        os.makedirs(os.path.join(self.folder.name, 'tests', 'results'))
        self.environment = {**os.environ, 'ZOTDAM_WINEPREFIX': self.folder.name}

    def shard_of(self, script, index=0, count=1):
        """Returns a shard that runs a shell script as the test program. $1 is the file for the results."""
        self.swap(run_tests, 'test_command', lambda build, program, pattern, path: ['bash', '-c', script, 'bash', path])
        shard = run_tests.Shard(self.folder.name, 'program', TESTS, index, count, None)
        shard.execute(self.environment)
        return shard

    def swap(self, owner, name, value):
        self.addCleanup(setattr, owner, name, getattr(owner, name))
        setattr(owner, name, value)

    def expect_counts(self, shard, passed, failed):
        self.assertEqual((shard.passed, sorted(name for name, _ in shard.failures)), (passed, sorted(failed)))

    def write(self, *tests):
        return f"cat >\"$1\" <<'RESULTS'\n{document(*tests)}\nRESULTS\n"

    def test_tests_with_results_pass(self):
        self.expect_counts(self.shard_of(self.write(result('One'), result('Two'))), 5, [])

    def test_failure_is_counted_once(self):
        failing = result('Two', failures=[{'failure': 'first'}, {'failure': 'second'}])
        self.expect_counts(self.shard_of(self.write(result('One'), failing) + 'exit 1'), 4, ['A.Two'])

    def test_missing_result_is_a_failure(self):
        self.expect_counts(self.shard_of(self.write(result('One'))), 4, ['A.Two'])

    def test_skipped_test_is_a_failure(self):
        skipped = result('Two') | {'result': 'SKIPPED'}
        self.expect_counts(self.shard_of(self.write(result('One'), skipped)), 4, ['A.Two'])

    def test_program_that_crashes_fails_all_its_tests(self):
        self.expect_counts(self.shard_of('kill -SEGV $$'), 0, TESTS)

    def test_program_that_hangs_fails_all_its_tests(self):
        self.swap(run_tests, 'TIME_LIMIT', 0.2)
        self.swap(run_tests, 'stop_server', lambda environment: None)
        self.expect_counts(self.shard_of('sleep 60'), 0, TESTS)

    def test_program_that_cannot_start_fails_all_its_tests(self):
        self.swap(run_tests, 'test_command', lambda *arguments: ['/no/such/program'])
        shard = run_tests.Shard(self.folder.name, 'program', TESTS, 0, 1, None)
        shard.execute(self.environment)
        self.expect_counts(shard, 0, TESTS)

    def test_results_of_earlier_run_do_not_count(self):
        self.shard_of(self.write(result('One'), result('Two')))
        self.expect_counts(self.shard_of('exit 1'), 0, TESTS)

    def test_nonzero_exit_code_is_a_failure(self):
        self.expect_counts(self.shard_of(self.write(result('One'), result('Two')) + 'exit 3'), 5, ['program'])

    def test_each_test_belongs_to_one_shard(self):
        shards = [run_tests.Shard(self.folder.name, 'program', TESTS, index, 2, None) for index in range(2)]
        self.assertEqual(sorted(shards[0].tests + shards[1].tests), sorted(TESTS))
        self.assertEqual(shards[0].tests, TESTS[0::2])

    def test_shard_that_never_runs_fails_all_its_tests(self):
        shard = run_tests.Shard(self.folder.name, 'program', TESTS, 0, 1, None)
        self.expect_counts(shard, 0, TESTS)


class CheckTest(unittest.TestCase):
    def check_of(self, script):
        with tempfile.TemporaryDirectory() as folder:
            os.makedirs(os.path.join(folder, 'tests', 'results'))
            check = run_tests.Check(folder, 'name')
            check.command = ['bash', '-c', script]
            output, sys.stdout = sys.stdout, open(os.devnull, 'w')
            try:
                check.execute(dict(os.environ))
            finally:
                sys.stdout.close()
                sys.stdout = output
            return check.passed, len(check.failures)

    def test_last_line_has_the_counts(self):
        self.assertEqual(self.check_of('echo 7 passed, 8 failed; echo 3 passed, 0 failed'), (3, 0))

    def test_failures_are_counted(self):
        self.assertEqual(self.check_of('echo 3 passed, 2 failed; exit 1'), (3, 2))

    def test_check_without_counts_is_a_failure(self):
        self.assertEqual(self.check_of('echo no counts'), (0, 1))

    def test_check_that_fails_after_counts_is_a_failure(self):
        self.assertEqual(self.check_of('echo 3 passed, 0 failed; exit 1'), (3, 1))


if __name__ == '__main__':
    outcome = unittest.TextTestRunner(stream=sys.stdout, verbosity=0).run(
        unittest.defaultTestLoader.loadTestsFromModule(sys.modules['__main__']))
    bad = len(outcome.failures) + len(outcome.errors)
    print(f'{outcome.testsRun - bad} passed, {bad} failed')
    sys.exit(1 if bad else 0)
