"""Utilities for calibration data, tables, logs and files.

Every class and member has the name that it has in C++. What a member returns is its own result, if it has one, and
behind it its by-reference results in their order: a tuple of several, the plain value of one.
"""

from ._core import (BoundedArray, CFile, CFileStream, CGeometry, CImportColumnData, CInterpolate, CLog, CMathUtils,
                    COSUtils, CStatistics, CString, CTrigonometry, EBoundsChecks, ELogAction, EMonotonicScale,
                    EErrorsMathUtil, EOSUtilsSpecialFolders, EOutOfBoundsBehaviour, LibraryError, LogEvent, Main, Missing)

LibraryError.__module__ = __name__

__all__ = [
    "BoundedArray", "CFile", "CFileStream", "CGeometry", "CImportColumnData", "CInterpolate", "CLog", "CMathUtils",
    "COSUtils", "CStatistics", "CString", "CTrigonometry", "EBoundsChecks", "EErrorsMathUtil", "ELogAction",
    "EMonotonicScale", "EOSUtilsSpecialFolders", "EOutOfBoundsBehaviour", "LibraryError", "LogEvent", "Main", "Missing",
]
