"""Callbacks into Python while threads of one Python process work on one file.

(Threads writing one file are the stress tool's scenario, tests/stress.)"""

import threading

import seluvorne

THREADS, ROUNDS = 8, 20


def new_file(path):
    db = seluvorne.DBEngine().CreateDatabase(path, ";LANGID=0x0411;CP=932;COUNTRY=0")
    table = db.CreateTableDef("TOORIMEI")
    for name, field_type, size in [("PAGE", 3, 0), ("TOORI", 10, 50)]:
        table.Fields.Append(table.CreateField(name, field_type, size))
    db.TableDefs.Append(table)
    db.Close()


def run_threads(work):
    """Runs work(n) on THREADS threads; answers the exceptions they raised."""
    failures = []

    def guarded(n):
        try:
            work(n)
        except Exception as failure:  # reported, not lost with the thread
            failures.append(failure)

    threads = [threading.Thread(target=guarded, args=(n,)) for n in range(THREADS)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    return failures


def test_a_python_factory_calling_back_into_the_library_does_not_deadlock(tmp_path, component):
    path = str(tmp_path / "SELUVORN.mdb")
    new_file(path)

    class Counter:
        """Made by the library under its lock; counts rows through the library again."""

        def __init__(self):
            rs = seluvorne.DBEngine().OpenDatabase(path).OpenRecordset("SELECT * FROM TOORIMEI;", 4)
            self.empty = rs.EOF

    component("SeluVorneTest.Counter", Counter)

    def work(n):
        for _ in range(ROUNDS):
            if n % 2:
                assert seluvorne.CreateObject("SeluVorneTest.Counter") is not None
            else:
                db = seluvorne.DBEngine().OpenDatabase(path)
                db.Execute(f"INSERT INTO TOORIMEI (PAGE, TOORI) VALUES ({n}, 'x');")
                db.Close()

    assert run_threads(work) == []
