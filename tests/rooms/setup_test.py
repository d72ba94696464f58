"""scripts/setup, with stand-ins for the package manager, so that nothing is installed."""

import os
import subprocess
import unittest

from support import TREE, ToolTest, run

BUILD_PACKAGES = ["ccache", "cmake", "g++", "libcli11-dev", "libfmt-dev", "libgmock-dev",
                  "libgtest-dev", "libpugixml-dev", "ninja-build", "python3", "xsltproc"]

DPKG_QUERY = """#!/bin/bash
for name in $INSTALLED; do
    [[ "${@: -1}" == "$name" ]] && { echo -n installed; exit 0; }
done
echo "no packages found" >&2
exit 1
"""
APT_GET = """#!/bin/bash
echo "apt-get $DEBIAN_FRONTEND $*" >> "$LOG"
[[ " $* " != *" $FAILING "* ]]
"""
SUDO = """#!/bin/bash
echo "sudo" >> "$LOG"
exec "$@"
"""
OPTIONS = "-o DPkg::Lock::Timeout=300"


class SetupTest(ToolTest):
    def setUp(self) -> None:
        super().setUp()
        self.log = self.root / "log"
        self.log.touch()
        self.tools = self.root / "bin"
        self.tools.mkdir()
        # Only these commands are there: no sudo unless a test puts one in.
        for command in ("bash", "env"):
            (self.tools / command).symlink_to(f"/usr/bin/{command}")
        self.program("dpkg-query", DPKG_QUERY)
        self.program("apt-get", APT_GET)
        self.user(0)

    def program(self, name: str, text: str) -> None:
        path = self.tools / name
        path.write_text(text.replace("#!/bin/bash", "#!/usr/bin/bash"), encoding="utf-8")
        path.chmod(0o755)

    def user(self, number: int) -> None:
        self.program("id", f"#!/bin/bash\necho {number}\n")

    def setup_script(self, *groups: str, installed: list[str],
                     failing: str = "-") -> subprocess.CompletedProcess:
        environment = {"PATH": str(self.tools), "LOG": str(self.log), "FAILING": failing,
                       "INSTALLED": " ".join(installed)}
        return subprocess.run(["/usr/bin/bash", str(TREE / "scripts/setup"), *groups],
                              env=environment, stdin=subprocess.DEVNULL, capture_output=True,
                              text=True, timeout=30, check=False)

    def calls(self) -> list[str]:
        return self.log.read_text(encoding="utf-8").splitlines()

    def test_nothing_is_asked_for_when_nothing_is_missing(self) -> None:
        result = self.setup_script(installed=BUILD_PACKAGES)
        self.assertEqual((result.returncode, self.calls()), (0, []))
        self.assertEqual(result.stdout, "setup: nothing is missing\n")

    def test_nothing_needs_a_right_when_nothing_is_missing(self) -> None:
        self.user(1000)
        result = self.setup_script(installed=BUILD_PACKAGES)
        self.assertEqual((result.returncode, self.calls()), (0, []))

    def test_only_what_is_missing_is_installed_after_one_update(self) -> None:
        present = [name for name in BUILD_PACKAGES if name not in ("cmake", "libfmt-dev")]
        result = self.setup_script(installed=present)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls(), [
            f"apt-get noninteractive {OPTIONS} update",
            f"apt-get noninteractive {OPTIONS} install --yes --no-install-recommends "
            "cmake libfmt-dev"])

    def test_a_fresh_system_gets_the_whole_list(self) -> None:
        result = self.setup_script(installed=[])
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(self.calls()[1].endswith("recommends " + " ".join(BUILD_PACKAGES)))

    def test_groups_are_added_up(self) -> None:
        result = self.setup_script("build", "bench", "format", "fuzz", "lint",
                                   installed=BUILD_PACKAGES)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(self.calls()[1].endswith(
            "recommends libbenchmark-dev valgrind clang-format clang libclang-rt-dev clang-tidy"))

    def test_an_ordinary_user_installs_by_sudo(self) -> None:
        self.user(1000)
        self.program("sudo", SUDO)
        result = self.setup_script(installed=BUILD_PACKAGES[1:])
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(self.calls(), [
            "sudo", f"apt-get noninteractive {OPTIONS} update",
            "sudo", f"apt-get noninteractive {OPTIONS} install --yes --no-install-recommends "
            "ccache"])

    def test_without_root_and_sudo_it_says_what_is_missing_and_what_to_do(self) -> None:
        self.user(1000)
        result = self.setup_script(installed=BUILD_PACKAGES[2:])
        self.assertEqual((result.returncode, self.calls()), (1, []))
        self.assertIn("these packages are missing: ccache cmake\n", result.stderr)
        self.assertIn("as root", result.stderr)
        self.assertIn("sudo", result.stderr)

    def test_a_failing_update_is_told_and_nothing_is_installed(self) -> None:
        result = self.setup_script(installed=[], failing="update")
        self.assertEqual(result.returncode, 1)
        self.assertIn("network connection", result.stderr)
        self.assertEqual(len(self.calls()), 1)

    def test_a_failing_installation_is_told(self) -> None:
        result = self.setup_script(installed=BUILD_PACKAGES[1:], failing="install")
        self.assertEqual(result.returncode, 1)
        self.assertIn("could not install ccache", result.stderr)

    def test_another_system_is_told_which_packages_are_meant(self) -> None:
        os.unlink(self.tools / "apt-get")
        result = self.setup_script(installed=[])
        self.assertEqual(result.returncode, 1)
        self.assertIn("no apt-get", result.stderr)
        self.assertIn(" ".join(BUILD_PACKAGES), result.stderr)

    def test_an_unknown_group_is_refused_with_the_known_ones(self) -> None:
        result = self.setup_script("everything", installed=[])
        self.assertEqual((result.returncode, self.calls()), (1, []))
        self.assertIn("'everything'; the groups are build, bench, format, fuzz and lint", result.stderr)


if __name__ == "__main__":
    run()
