# Type stubs of seluvorne.dao: the database engine's constants.
from typing import Final

dbInteger: Final[int]
dbText: Final[int]
dbFailOnError: Final[int]
dbOpenTable: Final[int]
dbOpenDynaset: Final[int]
dbOpenSnapshot: Final[int]
dbLangJapanese: Final[str]
