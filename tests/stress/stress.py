"""Several clients on one floor at once: processes and threads racing to create,
open, upgrade, write and delete it. Every call must succeed, every row written
must be there, and the file must pass SQLite's integrity check.

    stress.py [TRIALS]      (TRIALS from SELUVORNE_STRESS_TRIALS, else 3)

Each trial runs every scenario once on a fresh data root; the summary gives
the successes per scenario. The exit status is 1 when any trial failed.
"""

import multiprocessing
import os
import sys
import threading
import traceback

import seluvorne
from trials import check_file, create_table, run_trials, service

PROCESSES = 6
THREADS = 8
ROUNDS = 4


def floor_of(root):
    return seluvorne.CreateObject("FolderKit.clsFloorDirs").GetFullPathToKai(1, 1, 1)


def native(path):
    return path.replace("\\", "/")


def race(kind, count, work, *args):
    """Runs work(n, *args) in `count` processes or threads started together;
    answers their failures."""
    threads = kind == "thread"
    start = (threading if threads else multiprocessing).Barrier(count)
    failures = [] if threads else multiprocessing.Queue()
    report = failures.append if threads else failures.put

    def run(n):
        try:
            start.wait()
            work(n, *args)
        except BaseException:
            report(f"{kind} {n}: {traceback.format_exc()}")

    runners = [(threading.Thread if threads else multiprocessing.Process)(target=run, args=(n,))
               for n in range(count)]
    for runner in runners:
        runner.start()
    for runner in runners:
        runner.join()
    if threads:
        return failures
    found = []
    while not failures.empty():
        found.append(failures.get())
    return found + [f"process {n} died ({p.exitcode})" for n, p in enumerate(runners) if p.exitcode]


def add_page_row(rs, page):
    rs.AddNew()
    rs.Fields("PAGE").Value = page
    rs.Update()


# ---- scenarios: each answers a list of problems (empty: passed) ----------------


def open_new_floor(n, root):
    store = service(root)
    store.CurrKai = floor_of(root)
    db = store.KutaiDb
    add_page_row(db.OpenRecordset("TOORIMEI", 2), n)
    store.CloseDB()


def open_a_new_floor(kind, count):
    def scenario(root):
        service(root)
        problems = race(kind, count, open_new_floor, root)
        return problems or check_file(native(floor_of(root)) + "/SELUVORN.mdb", "TOORIMEI", count)
    return scenario


def processes_upgrade_an_older_floor(root):
    store = service(root)
    folder = floor_of(root)
    store.Create_SeluVornMDB(folder)  # the nine tables only, as older floors have
    problems = race("process", PROCESSES, open_new_floor, root)
    file = native(folder) + "/SELUVORN.mdb"
    return problems or check_file(file, "SPANTOP", 0) or check_file(file, "TOORIMEI", PROCESSES)


def threads_write_one_file(root):
    path = root + "/threads.mdb"
    create_table(path, "TOORIMEI", [("PAGE", 3, 0), ("TOORI", 10, 50)])

    def writer(n):
        for _ in range(20):
            db = seluvorne.DBEngine().OpenDatabase(path)
            rs = db.OpenRecordset("TOORIMEI", 2)
            add_page_row(rs, n)
            rs.Close()
            db.Close()

    return race("thread", THREADS, writer) or check_file(path, "TOORIMEI", THREADS * 20)


def create_write_delete(n, root):
    """Rounds of: open (creating when missing), write, close, delete when no one holds it."""
    store = service(root)
    folder = floor_of(root)
    for _ in range(ROUNDS):
        store.CurrKai = folder
        add_page_row(store.KutaiDb.OpenRecordset("TOORIMEI", 2), n)
        rows = store.KutaiDb.OpenRecordset("SELECT * FROM TOORIMEI WHERE PAGE = %d;" % n, 4)
        if rows.EOF:
            raise AssertionError("a row written is not there")
        store.CloseDB()
        try:
            store.DeleteMdbByPath(folder)
        except seluvorne.Error as error:
            if error.number != 70:  # another process has the floor open: it stays
                raise


def processes_create_write_delete(root):
    service(root)
    problems = race("process", PROCESSES, create_write_delete, root)
    file = native(floor_of(root)) + "/SELUVORN.mdb"
    return problems or (check_file(file) if os.path.exists(file) else [])


SCENARIOS = {
    "six processes set CurrKai on one new floor": open_a_new_floor("process", PROCESSES),
    "six processes open one older floor": processes_upgrade_an_older_floor,
    "eight threads open one new floor": open_a_new_floor("thread", THREADS),
    "eight threads x 20 rows on one file": threads_write_one_file,
    "six processes create, write, delete one floor": processes_create_write_delete,
}
def main():
    trials = int(sys.argv[1]) if len(sys.argv) > 1 else int(os.environ.get("SELUVORNE_STRESS_TRIALS", 3))
    return run_trials(SCENARIOS, trials, "seluvorne-stress-")


if __name__ == "__main__":
    multiprocessing.set_start_method("fork")
    sys.exit(main())
