"""scripts/demo around stand-ins for the build, the virtual instrument and the command line."""

import os
import subprocess
import time

from support import TREE, ToolTest, run

ADDRESS = "TCPIP0::127.0.0.1::40123::SOCKET"
INSTRUMENT = f"""#!/usr/bin/env bash
echo "$$" > "$LOG/instrument"
echo "$*" > "$LOG/instrument-arguments"
echo {ADDRESS}
exec sleep 60
"""
DEAD_INSTRUMENT = """#!/usr/bin/env bash
echo "kestrion-scope: no free port" >&2
exit 1
"""
CAPTURE = """#!/usr/bin/env bash
echo "$*" > "$LOG/capture-arguments"
echo "$KESTRION_VISA_LIBRARY" > "$LOG/library"
touch capture.csv capture.svg
echo "Source  Points"
"""
FAILING_CAPTURE = """#!/usr/bin/env bash
echo "kestrion: no response" >&2
exit 1
"""
NOTED = """#!/usr/bin/env bash
echo "{0} $*" >> "$LOG/steps"
"""


class DemoTest(ToolTest):
    def setUp(self) -> None:
        super().setUp()
        self.log = self.root / "log"
        self.folder = self.root / "a folder"
        for folder in (self.log, self.folder):
            folder.mkdir()
        self.program("scripts/demo", (TREE / "scripts/demo").read_text(encoding="utf-8"))
        self.program("scripts/setup", NOTED.format("setup"))
        self.program("scripts/build", NOTED.format("build"))
        self.program("build/release/virtual/server/kestrion-scope", INSTRUMENT)
        self.program("build/release/cli/kestrion", CAPTURE)

    def program(self, path: str, text: str) -> None:
        self.write(path, text)
        (self.root / path).chmod(0o755)

    def demo(self) -> subprocess.CompletedProcess:
        environment = {**os.environ, "LOG": str(self.log)}
        environment.pop("KESTRION_VISA_LIBRARY", None)
        return subprocess.run([self.root / "scripts/demo"], cwd=self.folder, env=environment,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True,
                              timeout=40, check=False)

    def noted(self, name: str) -> str:
        return (self.log / name).read_text(encoding="utf-8")

    def expect_instrument_ended(self) -> None:
        process = int(self.noted("instrument"))
        deadline = time.monotonic() + 20
        while os.path.exists(f"/proc/{process}") and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertFalse(os.path.exists(f"/proc/{process}"))

    def test_it_sets_up_builds_and_captures_into_the_current_folder(self) -> None:
        result = self.demo()
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.noted("steps"),
                         "setup build\nbuild release kestrion_cli kestrion-scope\n")
        self.assertEqual(self.noted("instrument-arguments"), "--port 0 --once\n")
        self.assertEqual(self.noted("capture-arguments"),
                         f"capture --resource {ADDRESS} --source CH1 --points 10000 "
                         "--csv capture.csv --svg capture.svg\n")
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()),
                         ["capture.csv", "capture.svg"])
        self.assertIn("Source  Points\n", result.stdout)
        self.assertIn(f"Written to {self.folder}:", result.stdout)

    def test_the_bundled_visa_library_carries_it(self) -> None:
        self.demo()
        self.assertEqual(self.noted("library"), "bundled\n")

    def test_it_can_be_repeated(self) -> None:
        self.assertEqual(self.demo().returncode, 0)
        self.assertEqual(self.demo().returncode, 0)

    def test_the_instrument_is_ended_afterwards(self) -> None:
        self.demo()
        self.expect_instrument_ended()

    def test_an_instrument_that_does_not_start_is_told(self) -> None:
        self.program("build/release/virtual/server/kestrion-scope", DEAD_INSTRUMENT)
        result = self.demo()
        self.assertEqual(result.returncode, 1)
        self.assertIn("no free port", result.stderr)
        self.assertIn("told no address", result.stderr)
        self.assertIn("kestrion-scope --port 0 by hand", result.stderr)

    def test_a_failing_capture_is_told_and_the_instrument_is_ended(self) -> None:
        self.program("build/release/cli/kestrion", FAILING_CAPTURE)
        result = self.demo()
        self.assertEqual(result.returncode, 1)
        self.assertIn("no response", result.stderr)
        self.assertIn("the capture failed", result.stderr)
        self.assertNotIn("Written to", result.stdout)
        self.expect_instrument_ended()

    def test_a_failing_build_ends_it(self) -> None:
        self.program("scripts/build", "#!/usr/bin/env bash\nexit 1\n")
        result = self.demo()
        self.assertEqual(result.returncode, 1)
        self.assertIn("the build failed", result.stderr)
        self.assertFalse((self.log / "instrument").exists())

    def test_a_failing_setup_ends_it_with_the_setups_own_words(self) -> None:
        self.program("scripts/setup", "#!/usr/bin/env bash\necho 'setup: no' >&2\nexit 1\n")
        result = self.demo()
        self.assertEqual((result.returncode, result.stderr), (1, "setup: no\n"))
        self.assertFalse((self.log / "steps").exists())


if __name__ == "__main__":
    run()
