"""A writer killed at random points: after each SIGKILL the file opens through the
library, passes SQLite's integrity check, and everything whose call returned
before the kill is there, whole.

    crash.py [TRIALS]       (TRIALS from SELUVORNE_CRASH_TRIALS, else 10)

A scenario is a child's work, which reports each member that returned on its
standard output ("done <token>"), and a check of what it left, given the
tokens reported. Add a scenario by adding a row to SCENARIOS.
"""

import os
import random
import signal
import subprocess
import sys
import time

import seluvorne
from trials import check_file, create_table, run_trials, service

FLOOR_TABLES = 9


def report(token):
    sys.stdout.write(f"done {token}\n")
    sys.stdout.flush()


def user_tables(db):
    tables = db.TableDefs
    return [tables(i).Name for i in range(tables.Count) if not tables(i).Name.startswith("MSys")]


# ---- creating floor files: each appears whole or not at all --------------------


def create_floors(root):
    store = service(root)
    for n in range(10**6):
        store.Create_SeluVornMDB_FullPath(f"{root}/f{n}.mdb")
        report(f"f{n}.mdb")


def check_floors(root, reported):
    problems = []
    files = [name for name in os.listdir(root) if name.endswith(".mdb")]
    problems += [f"{name} reported but missing" for name in reported if name not in files]
    engine = seluvorne.DBEngine()
    for name in files:  # reported or not: a file that is there is complete
        db = engine.OpenDatabase(f"{root}/{name}")
        if len(user_tables(db)) != FLOOR_TABLES:
            problems.append(f"{name}: {user_tables(db)}")
        db.Close()
        problems += check_file(f"{root}/{name}")
    return problems


# ---- appending rows through open, write, close: the last close checkpoints ------


def append_rows(root):
    path = f"{root}/rows.mdb"
    create_table(path, "KUTAIDATA", [("PAGE", 3, 0), ("BANGOU", 3, 0), ("DATA", 10, 200)])
    report("created")
    n = 0
    while True:
        db = seluvorne.DBEngine().OpenDatabase(path)
        rs = db.OpenRecordset("KUTAIDATA", 2)
        for _ in range(40):
            rs.AddNew()
            rs.Fields("PAGE").Value = n // 1000
            rs.Fields("BANGOU").Value = n % 1000
            rs.Fields("DATA").Value = "x" * 200
            rs.Update()
            report(n)
            n += 1
        rs.Close()
        db.Close()  # the process's last handle: SQLite checkpoints the log here


def check_rows(root, reported):
    path = f"{root}/rows.mdb"
    if "created" not in reported:
        return []
    db = seluvorne.DBEngine().OpenDatabase(path)
    rs = db.OpenRecordset("SELECT PAGE, BANGOU FROM KUTAIDATA;", 4)
    stored = set()
    while not rs.EOF:
        stored.add(rs.Fields("PAGE").Value * 1000 + rs.Fields("BANGOU").Value)
        rs.MoveNext()
    db.Close()
    lost = [int(token) for token in reported if token != "created" and int(token) not in stored]
    return ([f"{len(lost)} reported rows lost, first {lost[:5]}"] if lost else []) + check_file(path)


SCENARIOS = {
    "create floors": (create_floors, check_floors, 0.6),
    "append and checkpoint": (append_rows, check_rows, 0.6),
}


def trial(name, root):
    """Runs the child, kills it at a random moment, answers the problems found."""
    work, check, longest = SCENARIOS[name]
    child = subprocess.Popen(
        [sys.executable, __file__, "--child", name, root], stdout=subprocess.PIPE, text=True
    )
    if child.stdout.readline().strip() != "ready":
        child.kill()
        return ["the child did not start"]
    time.sleep(random.uniform(0, longest))
    child.send_signal(signal.SIGKILL)
    output, _ = child.communicate()
    reported = [line.split(" ", 1)[1] for line in output.splitlines() if line.startswith("done ")]
    members[name].append(len(reported))
    try:
        return check(root, reported)
    except seluvorne.Error as error:
        return [f"error {error.number}: {error}"]


members = {name: [] for name in SCENARIOS}  # members returned before each kill


def main():
    if len(sys.argv) == 4 and sys.argv[1] == "--child":
        seluvorne.register_standalone(sys.argv[3])
        print("ready", flush=True)
        SCENARIOS[sys.argv[2]][0](sys.argv[3])
        return 0
    trials = int(sys.argv[1]) if len(sys.argv) > 1 else int(os.environ.get("SELUVORNE_CRASH_TRIALS", 10))
    scenarios = {name: lambda root, name=name: trial(name, root) for name in SCENARIOS}
    return run_trials(scenarios, trials, "seluvorne-crash-", lambda name: "  (killed after %d to %d members)"
                      % (min(members[name]), max(members[name])))


if __name__ == "__main__":
    sys.exit(main())
