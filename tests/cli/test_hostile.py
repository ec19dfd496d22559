"""Floor files edited by other programs: what was planted in them never acts
inside the library, a file the library cannot use safely is refused with a
numbered error, and `check` names each object and `check --fix` removes it
with every row kept."""

import sqlite3

import pytest

from test_command import run

FLOOR = "Zene1/Kouji1/3kai/SELUVORN.mdb"
TABLES = ("TOORIMEI", "KUTAIDATA", "HANTI")


def counts(path):
    with sqlite3.connect(path) as db:
        return {t: db.execute(f"SELECT COUNT(*) FROM {t}").fetchone()[0] for t in TABLES}


def rebuild_with_check(db):
    db.executescript("""ALTER TABLE HANTI RENAME TO old;
        CREATE TABLE "HANTI" ("PAGE" INTEGER CHECK (PAGE < 100), "SUBPAGE" INTEGER,
                              "BANGOU" INTEGER, "DATA" TEXT);
        INSERT INTO HANTI SELECT * FROM old; DROP TABLE old;""")


ALL = ("show", "copy", "import")
# name, what is planted, the commands refused (3343), what check says
CASES = [
    ("trigger", "CREATE TRIGGER planted AFTER INSERT ON TOORIMEI BEGIN DELETE FROM HANTI; END",
     (), "trigger planted"),
    ("view", "CREATE VIEW planted AS SELECT * FROM HANTI", (), "view planted"),
    ("virtual table", "CREATE VIRTUAL TABLE planted USING fts5(x)", (), "virtual table planted"),
    # written over several lines, as any tool may write them
    ("expression index", "CREATE INDEX planted\n  ON HANTI (abs(PAGE))", ALL, "index planted"),
    ("partial index", "CREATE INDEX planted ON HANTI (PAGE)\n  where DATA <> ''", ALL, "index planted"),
    ("check constraint", rebuild_with_check, ALL, "CHECK (PAGE < 100)"),
    ("2,000 columns", "CREATE TABLE planted (" + ", ".join(f"c{i}" for i in range(2000)) + ")",
     ALL, "table planted"),
    # page 1's rows: reading them is refused, the rest of the floor stays usable
    ("100 MB text", "UPDATE KUTAIDATA SET DATA = printf('%.*c', 100000000, 'x') "
     "WHERE rowid = (SELECT MIN(rowid) FROM KUTAIDATA)", ("show", "copy"),
     "larger than any floor holds"),
]


@pytest.mark.parametrize("name, plant, refused, named", CASES, ids=[c[0] for c in CASES])
def test_planted_objects_never_act_and_check_names_them(tmp_path, name, plant, refused, named):
    root = tmp_path
    run(root, "sample", "1/1/3")
    run(root, "new", "1/1/4")
    run(root, "export", "1/1/3", "2", "-o", str(tmp_path / "page.json"))
    path = root / FLOOR
    with sqlite3.connect(path) as db:
        plant(db) if callable(plant) else db.execute(plant)
    before = counts(path)

    run(root, "floors")
    commands = {"show": ("show", "1/1/3", "1"),
                "copy": ("copy", "1/1/3", "1/1/4", "--pages", "1", "--append"),
                "import": ("import", "1/1/3", str(tmp_path / "page.json"), "--to", "12")}
    for command, args in commands.items():
        done = run(root, *args, expect=1 if command in refused else 0)
        assert command not in refused or "error 3343" in done.stderr
    if "import" in refused:
        assert counts(path) == before
    else:  # one page added, and nothing else touched
        assert counts(path)["HANTI"] > before["HANTI"]

    checked = run(root, "check", "1/1/3", expect=1)
    assert named in checked.stdout

    if name == "100 MB text":  # a value, not an object: check names it, fix leaves it
        return
    kept = counts(path)
    run(root, "check", "1/1/3", "--fix")
    assert (root / (FLOOR + ".bak")).exists()
    assert counts(path) == kept
    run(root, "check", "1/1/3")
    run(root, "import", "1/1/3", str(tmp_path / "page.json"), "--to", "13")
