"""A host as mypy sees it: every line is well typed, but for those that say which fault they have."""

import numpy

import vorquill21
from vorquill21 import BoundedArray, EBoundsChecks, ELogAction


def shown(line: str, action: ELogAction) -> None:
    print(action.name, line)


class Utils(vorquill21.CMathUtils):
    def ArrayLocate(self, arXVals: object, arX: float, *, anIndex: int = 0) -> tuple[bool, int]:
        return True, 0


library = vorquill21.Main()
is_inside, index = library.LibMathUtils().ArrayLocate(numpy.arange(5.0), 2.5)
either: bool = is_inside and index > 0
coefficients, deviation = library.LibInterpolate().OneDPolynomialFit([1, 2], BoundedArray([1, 2]), 1)
bounds: tuple[int, ...] = coefficients.lower_bounds
total: float = deviation + library.LibStatistics().RMS([1.5])
status: tuple[bool, str] = library.LibMathUtils().IsInBounds(1, "X", EBoundsChecks.evcBetween, 0, 2)
library.LibInterpolate().moUtils = Utils()
library.LibLog().EntryLogged.Connect(shown)
names: list[str] = library.LibString().Split5("a b")
nothing = vorquill21.CFileStream().GetFieldString("A", vorquill21.Missing)
columns = vorquill21.CImportColumnData()
columns.Delimiter = ","

columns.ColumnCount = 5  # type: ignore[misc]
columns.Delimiter = 5  # type: ignore[assignment]
library.LibStatistics().RMS(None)  # type: ignore[arg-type]
library.LibMathUtils().DWordMake("1", 2)  # type: ignore[arg-type]
library.LibMathUtils().DWordMake(1)  # type: ignore[call-arg]
library.LibLog().EntryLogged.Connect(print, 1)  # type: ignore[call-arg]
library.NoSuchMember()  # type: ignore[attr-defined]
