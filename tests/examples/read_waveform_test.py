"""The example programs, run as a reader would."""

import os
import subprocess
import unittest


def run_example(*arguments: str) -> subprocess.CompletedProcess:
    return subprocess.run([os.environ["KESTRION_EXAMPLE"], *arguments], capture_output=True,
                          text=True, timeout=50, check=False)


class ReadWaveformTest(unittest.TestCase):
    def test_prints_a_line_for_each_point_of_the_virtual_instrument(self) -> None:
        example = run_example()
        self.assertEqual((example.returncode, example.stderr), (0, ""))
        lines = example.stdout.splitlines()
        self.assertEqual(len(lines), 1000)
        for line in lines:
            self.assertRegex(line, r"^-?[0-9.e+-]+ s  -?[0-9.e+-]+ V$")

    def test_the_record_is_a_signal_over_rising_time(self) -> None:
        fields = [line.split() for line in run_example().stdout.splitlines()]
        times = [float(field[0]) for field in fields]
        self.assertEqual(times, sorted(times))
        self.assertGreater(times[-1], times[0])
        self.assertGreater(len({field[2] for field in fields}), 10)

    def test_a_failure_ends_with_the_drivers_own_text(self) -> None:
        example = run_example("VIRTUAL::NOSUCHMODEL::INSTR")
        self.assertEqual((example.returncode, example.stdout), (1, ""))
        self.assertNotEqual(example.stderr.strip(), "")


if __name__ == "__main__":
    unittest.main(verbosity=2)
