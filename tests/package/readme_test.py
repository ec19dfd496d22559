"""Runs every ```python and ```cpp block of the README, twice each, so that the
README cannot drift from the library.

Python blocks run with the built module; C++ blocks are compiled against a
copy of the library installed into a temporary prefix (found with
pkg-config). Each run starts in a new empty folder and must leave it empty.
A block that is only a fragment is marked by the line

    <!-- readme-test: fragment -->

right before its fence, and is skipped.

    readme_test.py <README.md> <build dir> <python package dir> <work dir>
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

FRAGMENT = "<!-- readme-test: fragment -->"
FENCE = re.compile(r"^```(\w+)\s*$")


def blocks(readme):
    """(line of the opening fence, language, code) of each python and cpp block."""
    lines = readme.read_text(encoding="utf-8").splitlines()
    found, i = [], 0
    while i < len(lines):
        match = FENCE.match(lines[i])
        if not match:
            i += 1
            continue
        start, language = i, match.group(1)
        end = start + 1
        while end < len(lines) and lines[end].strip() != "```":
            end += 1
        previous = next((lines[j] for j in range(start - 1, -1, -1) if lines[j].strip()), "")
        if language in ("python", "cpp") and previous.strip() != FRAGMENT:
            found.append((start + 1, language, "\n".join(lines[start + 1 : end]) + "\n"))
        i = end + 1
    return found


def run_twice(where, command, env):
    """None when the command passes twice in a new empty folder and leaves it empty."""
    for attempt in (1, 2):
        with tempfile.TemporaryDirectory() as folder:
            done = subprocess.run(command, cwd=folder, env=env, capture_output=True, text=True, timeout=120)
            if done.returncode != 0:
                return f"{where}: failed on run {attempt} (exit {done.returncode}):\n{done.stdout}{done.stderr}"
            left = sorted(os.listdir(folder))
            if left:
                return f"{where}: run {attempt} left files in its working folder: {left}"
    return None


def main():
    readme, build, python_path, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:5])
    shutil.rmtree(work, ignore_errors=True)
    work.mkdir(parents=True)
    env = dict(os.environ, PYTHONPATH=str(python_path), QT_QPA_PLATFORM="offscreen", PYTHONDONTWRITEBYTECODE="1")
    prefix = work / "prefix"
    installed = False
    failures = []
    found = blocks(readme)
    for line, language, code in found:
        where = f"{readme}:{line} ({language} block)"
        source = work / f"block{line}.{'py' if language == 'python' else 'cpp'}"
        source.write_text(code, encoding="utf-8")
        if language == "python":
            failure = run_twice(where, [sys.executable, str(source)], env)
        else:
            if not installed:
                subprocess.run(["cmake", "--install", str(build), "--prefix", str(prefix)], check=True, capture_output=True)
                installed = True
            program = work / f"block{line}"
            flags = subprocess.run(
                ["pkg-config", "--cflags", "--libs", "seluvorne"],
                env=dict(env, PKG_CONFIG_PATH=str(prefix / "lib" / "pkgconfig")),
                check=True, capture_output=True, text=True,
            ).stdout.split()
            compiled = subprocess.run(
                ["c++", "-std=c++20", str(source), "-o", str(program), *flags, f"-Wl,-rpath,{prefix / 'lib'}"],
                capture_output=True, text=True,
            )
            if compiled.returncode != 0:
                failure = f"{where}: does not compile against the installed library:\n{compiled.stderr}"
            else:
                failure = run_twice(where, [str(program)], env)
        print(f"{where}: {'FAILED' if failure else 'ok'}")
        if failure:
            failures.append(failure)
    if not found:
        failures.append(f"{readme}: no python or cpp block found")
    shutil.rmtree(work, ignore_errors=True)
    for failure in failures:
        print("\n" + failure, file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
