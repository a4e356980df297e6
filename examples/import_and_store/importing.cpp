#include "importing.hpp"

namespace example {

using namespace vorquill21;

namespace {

/// The limits of a column and the values outside them.
void CheckBounds(const CMathUtils& utils, const CImportColumnData& import, std::int32_t column, double least,
                 double greatest, std::int32_t expectedRefusals, Expectations& expectations) {
  const Text name = import.ColumnHeaderData(column).As<Text>();
  std::int32_t refusals = 0;
  for (std::int32_t row = 0; row < import.DataRowCount(); ++row) {
    const Variant value = import.ColumnData(column, row);
    Text reason;
    if (utils.IsInBounds(value, name, reason, evcBetween, least, greatest)) continue;
    ++refusals;
    Say(u"refused: row " + Shown(row + 1) + u", value " + Shown(value.As<double>()) + u": " + reason);
  }
  if (refusals == 0) Say(name + u" lies within its limits");
  expectations.Expect(refusals == expectedRefusals,
                      u"the number of values of " + name + u" outside its limits");
}

/// Part of a column as an array of its own.
Variant Slice(const Variant& column, std::int32_t from, std::int32_t count) {
  BoundedArray<double> slice(Bounds{0, count - 1});
  for (std::int32_t i = 0; i < count; ++i) slice(i) = ArrayElement(column, from + i).As<double>();
  return slice;
}

bool CheckAscending(const CMathUtils& utils, const Variant& values, TextView name) {
  Text reason;
  const bool isAscending = utils.ArrayIsMonotonic1D(values, emsPositive, name, &reason);
  Say(isAscending ? Text(name).append(u" ascends") : u"refused: " + reason);
  return isAscending;
}

void SayImport(const Session& session, bool isImported, const CImportColumnData& import, const Text& status) {
  const Text name = session.library.LibFile()->ParseFileName(import.Filepath());
  if (!isImported) {
    Say(u"refused: " + status);
    session.Log().AddEntry(Text(name).append(u" was not imported"), logException);
    return;
  }
  session.Log().AddEntry(Text(name).append(u" was imported"), logNormal);
  Say(Shown(import.DataRowCount()) + u" rows of " + Shown(import.ColumnCount()) + u" columns");
  if (!status.empty()) Say(u"noted: " + status);
}

Text RowText(const CImportColumnData& import, std::int32_t row) {
  Text text;
  for (std::int32_t column = 0; column < import.ColumnCount(); ++column) {
    if (column > 0) text.append(u", ");
    text.append(import.ColumnHeaderData(column).As<Text>()).append(u" = ");
    text.append(Shown(import.ColumnData(column, row).As<double>()));
  }
  return text;
}

}  // namespace

Calibration ImportCalibration(const Session& session, TextView folder, Expectations& expectations,
                              bool& isUsable) {
  constexpr std::int32_t kLoad = 0;
  constexpr std::int32_t kDeflection = 1;
  SayTitle(u"Import: load-cell-calibration.txt, with the importer's stored settings");
  CImportColumnData import(session.platform);
  import.SettingsReadFromRegistry();
  import.Filepath(Text(folder).append(u"/load-cell-calibration.txt"));
  Text status;
  isUsable = import.Import(&status);
  SayImport(session, isUsable, import, status);
  constexpr std::int32_t kPoints = Calibration::kRuns * Calibration::kPointsPerRun;
  isUsable = isUsable && import.ColumnCount() == 2 && import.DataRowCount() == kPoints;
  expectations.Expect(isUsable, u"two columns of forty points");
  if (!isUsable) return {};

  const CMathUtils& utils = *session.library.LibMathUtils();
  const Calibration calibration{import.ColumnData(kLoad), import.ColumnData(kDeflection)};
  CheckBounds(utils, import, kLoad, 0, 3000001, 0, expectations);
  CheckBounds(utils, import, kDeflection, 0, 2, 4, expectations);
  expectations.Expect(!CheckAscending(utils, calibration.loads, u"Load"),
                      u"two runs are not one ascending run");
  for (std::int32_t run = 0; run < Calibration::kRuns; ++run) {
    const Variant loads =
        Slice(calibration.loads, run * Calibration::kPointsPerRun, Calibration::kPointsPerRun);
    expectations.Expect(CheckAscending(utils, loads, u"Load of run " + Shown(run + 1)), u"each run ascends");
  }
  return calibration;
}

void ImportFaultyColumns(const Session& session, TextView folder, Expectations& expectations) {
  SayTitle(u"Import: faulty-columns.txt, separated by semicolons");
  CImportColumnData import(session.platform);
  import.Filepath(Text(folder).append(u"/faulty-columns.txt"));
  import.Delimiter(u";");
  import.HeaderRow(1);
  import.FirstValueRow(2);
  Text status;
  const bool isImported = import.Import(&status);
  SayImport(session, isImported, import, status);
  expectations.Expect(isImported && import.DataRowCount() == 4,
                      u"four rows before the line that is too short");
  for (std::int32_t row = 0; row < import.DataRowCount(); ++row) Say(u"read: " + RowText(import, row));
  Say(u"refused: line " + Shown(import.FirstValueRow() + import.DataRowCount()) +
      u", which has fewer fields than the header, and everything after it");

  const CMathUtils& utils = *session.library.LibMathUtils();
  CheckBounds(utils, import, 2, 15, 30, 2, expectations);
  CheckBounds(utils, import, 3, 0, 10, 1, expectations);
  expectations.Expect(CheckAscending(utils, import.ColumnData(0), u"Time"), u"the times ascend");

  import.Filepath(Text(folder).append(u"/no-such-file.txt"));
  const bool isMissingImported = import.Import(&status);
  Say(u"no-such-file.txt:");
  SayImport(session, isMissingImported, import, status);
  expectations.Expect(!isMissingImported && import.DataRowCount() == 4, u"a failure keeps the last columns");
}

}  // namespace example
