"""SeluVorneDS from Python.

Create the library's components and the suite's by name, call their members
by name, and write components in Python that the library calls by name:

    import seluvorne
    from seluvorne import Ref

    class FloorDirs:
        def GetFullPathToKai(self, ZeneNo: Ref, KoujiNo: Ref, KaiNo: Ref):
            return f"/data/Zene{ZeneNo.value}/Kouji{KoujiNo.value}/{KaiNo.value}kai"

    seluvorne.register("FolderKit.clsFloorDirs", FloorDirs)
    dirs = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    dirs.GetFullPathToKai(1, 2, 3)     # '/data/Zene1/Kouji2/3kai'

docs/python.md gives the rules values follow across the boundary.
"""

from seluvorne._seluvorne import (
    FLOOR_COMPANION,
    Array,
    CreateObject,
    DBEngine,
    Dispatch,
    Error,
    Member,
    Ref,
    migrate_floor,
    register,
    register_standalone,
    restart,
    unregister,
)

# `import seluvorne.dao` and `from seluvorne.dao import dbText` find the
# extension's submodule of the engine's constants.
import sys as _sys

from seluvorne._seluvorne import dao

dao.__name__ = __name__ + ".dao"
_sys.modules[dao.__name__] = dao

__all__ = [
    "FLOOR_COMPANION",
    "Array",
    "CreateObject",
    "DBEngine",
    "Dispatch",
    "Error",
    "Member",
    "Ref",
    "migrate_floor",
    "register",
    "register_standalone",
    "restart",
    "unregister",
]
