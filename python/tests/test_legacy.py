"""Legacy floors from Python: migrate_floor and its report."""

import os
import shutil

import pytest

import seluvorne

FIXTURES = os.path.join(os.path.dirname(__file__), "..", "..", "tests", "fixtures", "jet")


def floor(tmp_path, fixture, replace=None):
    folder = tmp_path / "floor"
    shutil.copytree(os.path.join(FIXTURES, fixture), folder,
                    ignore=shutil.ignore_patterns("*.json"))
    for name, broken in (replace or {}).items():
        shutil.copyfile(os.path.join(FIXTURES, broken), folder / name)
    return folder


def test_migrate_floor_reports_every_table_as_a_dict(tmp_path):
    folder = floor(tmp_path, "floor-basic")
    report = seluvorne.migrate_floor(str(folder))
    files = {f["file"]: f for f in report["files"]}
    assert set(files) == {"SELUVORN.mdb", "HARIFUKA.mdb", "SeluVorneSW.MDB"}
    assert all(f["migrated"] for f in files.values())
    kutai = next(t for t in files["SELUVORN.mdb"]["tables"] if t["table"] == "KUTAIDATA")
    assert kutai == {"table": "KUTAIDATA", "recorded": 343, "read": 343, "written": 343}
    assert report["report_file"] is None
    assert (folder / "SELUVORN.mdb.jet").exists()

