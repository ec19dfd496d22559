"""What the long-run tools share: a floor service on a data root, a table made
through the engine, a file's integrity, and the trials loop with its summary."""

import sqlite3
import tempfile

import seluvorne

LOCALE = ";LANGID=0x0411;CP=932;COUNTRY=0"


def service(root):
    seluvorne.register_standalone(root)
    store = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    store.FloorCompanion = seluvorne.CreateObject(seluvorne.FLOOR_COMPANION)
    return store


def create_table(path, name, fields):
    """A new database at path holding one table of (name, type, size) fields."""
    db = seluvorne.DBEngine().CreateDatabase(path, LOCALE)
    table = db.CreateTableDef(name)
    for field, kind, size in fields:
        table.Fields.Append(table.CreateField(field, kind, size))
    db.TableDefs.Append(table)
    db.Close()


def check_file(path, table=None, rows=None):
    """Problems of a file: SQLite's integrity check, and the row count of a table."""
    with sqlite3.connect(path) as db:
        problems = []
        if db.execute("PRAGMA integrity_check").fetchone()[0] != "ok":
            problems.append(f"{path}: integrity_check failed")
        if table is not None:
            found = db.execute(f'SELECT COUNT(*) FROM "{table}"').fetchone()[0]
            if found != rows:
                problems.append(f"{path}: {found} rows in {table}, {rows} written")
    return problems


def run_trials(scenarios, trials, prefix, detail=lambda name: ""):
    """Runs each scenario(root) once per trial on a fresh data root; a scenario
    answers its problems (none: passed). Prints the successes per scenario and
    answers the exit status."""
    passed = dict.fromkeys(scenarios, 0)
    for trial in range(trials):
        for name, scenario in scenarios.items():
            with tempfile.TemporaryDirectory(prefix=prefix) as root:
                problems = scenario(root)
            if problems:
                print(f"trial {trial + 1}, {name}:", *problems, sep="\n  ", flush=True)
            else:
                passed[name] += 1
        print(f"trial {trial + 1} done: {sum(passed.values())} scenarios passed so far", flush=True)
    for name, count in passed.items():
        print(f"{count:4d} of {trials}  {name}{detail(name)}")
    return 0 if all(count == trials for count in passed.values()) else 1
