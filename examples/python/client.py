"""A Python client of the installed module: the beam frame store of a new
floor, created by name on the standalone components, in a temporary data root.

    PYTHONPATH=<prefix>/lib/python3.11/dist-packages python3 client.py
"""
import tempfile

import seluvorne

with tempfile.TemporaryDirectory() as root:
    seluvorne.register_standalone(root)
    floors = seluvorne.CreateObject("FolderKit.clsFloorDirs")
    floor = floors.GetFullPathToKai(1, 2, 3)

    service = seluvorne.CreateObject("SeluVorneDS.clsSeluVorneDataService")
    service.CurrKai = floor  # creates and opens the floor
    print(f"seluvorne: {floor} holds {service.KutaiDb.TableDefs.Count} tables")
    service.CloseDB()
