"""The `seluvorne` command end to end, on a scratch data root holding the
sample office floor (1/1/3) and an empty floor (1/1/4)."""

import json
import os
import sqlite3
import subprocess

import pytest

COMMAND = os.environ["SELUVORNE_COMMAND"]


def run(root, *args, expect=0):
    done = subprocess.run([COMMAND, "--data", str(root), *args], capture_output=True, text=True,
                          timeout=120)
    assert done.returncode == expect, (args, done.stdout, done.stderr)
    return done


def run_json(root, *args):
    return json.loads(run(root, *args, "--json").stdout)


@pytest.fixture(scope="module")
def root(tmp_path_factory):
    root = tmp_path_factory.mktemp("beams")
    run(root, "sample", "1/1/3")
    run(root, "new", "1/1/4")
    return root


def test_show_reads_the_span_model(root):
    beam = run_json(root, "show", "1/1/3", "2")["beam"]
    assert beam["grid_name"] == "Y2通り" and len(beam["spans"]) == 4
    third = beam["spans"][2]
    assert third["grid_name"] == "X3" and third["length"] == 7200
    assert third["column_left"] == 425 and third["clear_span"] == 7200 - 850
    assert third["depth"] == {"left": 850, "right": 850}
    assert third["change_points"] == [{"distance": 2500, "level": 0},
                                      {"distance": 2500, "level": -150}]
    assert beam["last_column"]["grid_name"] == "X5"
    long_span = run_json(root, "show", "1/1/3", "5")["beam"]["spans"][1]
    assert long_span["length"] == 8400
    assert long_span["haunches"]["left_bottom"] == "1200,200"
    assert long_span["anchorage"]["left"] == ["40d", "25d"]
    assert "change point at 2500 mm: top -150" in run(root, "show", "1/1/3", "2").stdout


def test_draw_writes_svg_and_png(root, tmp_path):
    svg, png = tmp_path / "beam.svg", tmp_path / "beam.png"
    run(root, "draw", "1/1/3", "5", "-o", str(svg), "--scale", "1:100")
    run(root, "draw", "1/1/3", "5", "-o", str(png))
    text = svg.read_text()
    assert "<svg" in text and "X1通り" in text and "8400" in text
    assert png.read_bytes()[:8] == b"\x89PNG\r\n\x1a\n"


@pytest.mark.parametrize("args, status, start", [
    ((), 2, "A subcommand is required"),
    (("show", "1/1/9", "1"), 1, "error 3024: "),
    (("show", "1/1/3", "99"), 1, "error 3021: "),
    (("export", "1/1/3", "99"), 1, "error 3021: "),
    (("show", "1/1/3", "0"), 2, "usage error: "),
    (("export", "1/1/3", "1,x"), 2, "usage error: "),
    (("draw", "1/1/3", "1", "-o", "beam.svg", "--scale", "50:1"), 2, "usage error: "),
    (("draw", "1/1/3", "1", "-o", "beam.pdf"), 1, "error 5: "),
    (("pages", "1/1/3", "--bogus"), 2, ""),
    (("pages", "1/1/3", "--kind", "column"), 2, ""),
])
def test_errors_are_one_line_with_their_status(root, args, status, start):
    done = run(root, *args, expect=status)
    assert done.stderr.startswith(start)
    if status == 1:
        assert len(done.stderr.strip().splitlines()) == 1


def test_export_then_import_gives_the_same_rows(root, tmp_path):
    exported = tmp_path / "pages.json"
    run(root, "export", "1/1/3", "2,5-6", "-o", str(exported))
    run(root, "import", "1/1/4", str(exported))
    again = json.loads(run(root, "export", "1/1/4", "2,5-6").stdout)
    first = json.loads(exported.read_text())
    assert [p["tables"] for p in again["pages"]] == [p["tables"] for p in first["pages"]]
    assert sum(len(t["rows"]) for t in first["pages"][0]["tables"].values()) > 100

    run(root, "import", "1/1/4", str(exported), "--to", "20")
    moved = json.loads(run(root, "export", "1/1/4", "20").stdout)
    assert moved["pages"][0]["tables"]["TOORIMEI"]["rows"] == [[19, "Y2通り", "1"]]


def test_copy_appends_with_progress_and_checks_the_page_limit(root):
    before = len(run_json(root, "pages", "1/1/4")["pages"])
    checked = run(root, "copy", "1/1/3", "1/1/4", "--pages", "1-3", "--check-only")
    assert checked.stdout.startswith("check passed: 3 pages can be copied")
    assert len(run_json(root, "pages", "1/1/4")["pages"]) == before

    done = run(root, "copy", "1/1/3", "1/1/4", "--pages", "1-3", "--append")
    assert "progress 3/3" in done.stderr
    pages = run_json(root, "pages", "1/1/4")["pages"]
    assert [p["grid_name"] for p in pages[-3:]] == ["Y1通り", "Y2通り", "Y3通り"]

    # A page 500 on the destination leaves no room after it.
    exported = root / "page-1.json"
    run(root, "export", "1/1/3", "1", "-o", str(exported))
    run(root, "import", "1/1/4", str(exported), "--to", "500")
    refused = run(root, "copy", "1/1/3", "1/1/4", "--pages", "1", "--append", expect=1)
    assert "page limit" in refused.stderr
    assert len(run_json(root, "pages", "1/1/4")["pages"]) == before + 4


def test_check_finds_rows_the_directory_does_not_list(root, tmp_path):
    assert run(root, "check", "1/1/3").stdout.strip().endswith(": ok")
    run(root, "sample", str(root / "Zene2" / "Kouji1" / "1kai"))
    import seluvorne
    db = seluvorne.DBEngine().Workspaces(0).OpenDatabase(
        str(root / "Zene2" / "Kouji1" / "1kai" / "SELUVORN.mdb"))
    db.Execute("DELETE * FROM TOORIMEI WHERE PAGE = 3 ;", 128)
    db.Close()
    done = run(root, "check", "2/1/1", expect=1)
    assert "KUTAIDATA holds rows of page 4" in done.stdout
    assert done.stderr.startswith("check: ")

    # An index whose entries no longer match its rows: SQLite's integrity check names them.
    with sqlite3.connect(root / "Zene2" / "Kouji1" / "1kai" / "SELUVORN.mdb") as damaged:
        damaged.execute("PRAGMA writable_schema = ON")
        damaged.execute("""UPDATE sqlite_schema SET sql = 'CREATE INDEX "KUTAIDATA~PAGE" ON
                           "KUTAIDATA" ("DATA")' WHERE name = 'KUTAIDATA~PAGE'""")
    damaged = run(root, "check", "2/1/1", expect=1)
    assert "row 1 missing from index KUTAIDATA~PAGE" in damaged.stdout, damaged.stderr

