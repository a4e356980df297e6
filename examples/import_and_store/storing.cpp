#include "storing.hpp"

#include <span>

namespace example {

using namespace vorquill21;

namespace {

constexpr TextView kVersion = u"CALIBRATION 1.2";
constexpr std::int32_t kPoints = Calibration::kRuns * Calibration::kPointsPerRun;
constexpr std::int32_t kLastPoint = Calibration::kPointsPerRun - 1;

BoundedArray<Variant> Versions(std::vector<Variant> versions) {
  return BoundedArray<Variant>(std::move(versions));
}

/// One row for each point: load and deflection.
BoundedArray<double> PointTable(const Calibration& calibration) {
  BoundedArray<double> table(Bounds{0, kPoints - 1}, Bounds{0, 1});
  for (std::int32_t point = 0; point < kPoints; ++point) {
    table(point, 0) = ArrayElement(calibration.loads, point).As<double>();
    table(point, 1) = ArrayElement(calibration.deflections, point).As<double>();
  }
  return table;
}

/// The coefficients of the fit as a field wants them: from index 0.
BoundedArray<double> Coefficients(const CalibrationFit& fit) {
  BoundedArray<double> coefficients(Bounds{0, 2});
  for (std::int32_t power = 0; power <= 2; ++power) coefficients(power) = fit.coefficients(power + 1);
  return coefficients;
}

/// A page for each run; pages count from 1.
BoundedArray<double> RunTables(const Calibration& calibration) {
  BoundedArray<double> tables(Bounds{0, kLastPoint}, Bounds{0, 1}, Bounds{0, Calibration::kRuns});
  for (std::int32_t run = 1; run <= Calibration::kRuns; ++run) {
    for (std::int32_t point = 0; point <= kLastPoint; ++point) {
      const std::int32_t index = (run - 1) * Calibration::kPointsPerRun + point;
      tables(point, 0, run) = ArrayElement(calibration.loads, index).As<double>();
      tables(point, 1, run) = ArrayElement(calibration.deflections, index).As<double>();
    }
  }
  return tables;
}

bool PagesAreEqual(const BoundedArray<double>& stored, const Variant& read) {
  for (std::int32_t run = 1; run <= Calibration::kRuns; ++run) {
    for (std::int32_t point = 0; point <= kLastPoint; ++point) {
      for (std::int32_t column = 0; column <= 1; ++column) {
        if (ArrayElement(read, point, column, run) != Variant(stored(point, column, run))) return false;
      }
    }
  }
  return true;
}

}  // namespace

void StoreCalibration(const Session& session, const Calibration& calibration, const CalibrationFit& fit,
                      TextView path, Expectations& expectations) {
  SayTitle(u"Store: calibration.txt, version " + Text(kVersion));
  CFileStream& stream = *session.library.LibFilestream();
  stream.Initialise(kVersion, Versions({u"CALIBRATION 1.1"}));
  stream.AddField(u"INSTRUMENT", u"Load cell");
  stream.AddField(u"UNITS", Versions({u"lbf", u"indicator units"}));
  stream.AddField(u"LIMITS", BoundedArray<double>(std::vector<double>{0, 3000000, 2.25}));
  stream.AddField(u"COEFFICIENTS", Coefficients(fit));
  expectations.Expect(stream.AddTable2d(u"POINTS", PointTable(calibration)), u"a table is stored");
  expectations.Expect(stream.AddTable3d(u"RUNS", RunTables(calibration)), u"the pages of a table are stored");

  BoundedArray<Variant> remarks(Bounds{0, 0}, Bounds{0, 0});
  remarks(0, 0) = u"not a number";
  expectations.Expect(!stream.AddTable2d(u"REMARKS", remarks), u"a table of texts is refused");

  expectations.Expect(stream.FileWrite(path), u"the file is written");
  Say(u"written: 4 fields, a table, and a table of 2 pages");
  session.Log().AddEntry(u"calibration.txt was written", logNormal);
  try {
    stream.FileWrite(Text(path).append(u"/below a file"));
    expectations.Expect(false, u"a file below a file is refused");
  } catch (const LibraryError& error) {
    Say(u"refused: a file below a file: error " + Shown(error.Number()) + u" from " + error.Source());
  }
}

void ReadCalibrationBack(const Session& session, const Calibration& calibration, TextView path,
                         Expectations& expectations) {
  SayTitle(u"Read back: calibration.txt");
  CFileStream& stream = *session.library.LibFilestream();
  stream.Initialise(kVersion, Versions({u"CALIBRATION 1.1"}));
  expectations.Expect(!stream.FieldExists(u"INSTRUMENT"), u"a new document holds nothing of the last one");
  expectations.Expect(stream.FileRead(path), u"the file is read");
  Say(u"version " + stream.FileVersion() + u", number " + stream.FileVersionNumber());
  Say(u"instrument: " + stream.GetFieldString(u"INSTRUMENT").As<Text>());
  Say(u"units: " + ArrayElement(stream.GetFieldString(u"UNITS"), 0).As<Text>() + u" and " +
      ArrayElement(stream.GetFieldString(u"UNITS"), 1).As<Text>());
  Say(u"greatest load: " + Shown(ArrayElement(stream.GetFieldNumber(u"LIMITS"), 1).As<double>()));
  Say(u"coefficient of load^2: " +
      Shown(ArrayElement(stream.GetFieldNumber(u"COEFFICIENTS"), 2).As<double>()));
  Say(u"a field that is missing has its default: " + Shown(stream.GetFieldNumber(u"GAIN", 1.5).As<double>()));

  const BoundedArray<double> points = PointTable(calibration);
  expectations.Expect(stream.GetTable2d(u"POINTS") == Variant(points), u"the table is what was stored");
  const BoundedArray<double> runs = RunTables(calibration);
  const Variant readRuns = stream.GetTable3d(u"RUNS", kLastPoint, 1, Calibration::kRuns);
  expectations.Expect(readRuns.IsArray() && PagesAreEqual(runs, readRuns), u"the pages are what was stored");
  if (expectations.AllHold()) Say(u"both tables are what was stored, to the last bit");
  try {
    Say(u"units as a number: " + Shown(stream.GetFieldString(u"UNITS").As<double>()));
    expectations.Expect(false, u"a list of texts is no number");
  } catch (const LibraryError&) {
    session.Log().AddEntry(u"the units are no number", logExceptionError);
  }
  expectations.Expect(stream.GetTable2d(u"NOWHERE").IsEmpty(), u"a missing table is empty");
  const Variant thirdPage = stream.GetTable3d(u"RUNS", kLastPoint, 1, Calibration::kRuns + 1);
  expectations.Expect(thirdPage == Variant(false), u"a missing page is refused");

  const bool isAccepted = stream.IsCompatibleVersion(false);
  expectations.Expect(isAccepted, u"the version is accepted");
  if (isAccepted) Say(u"accepted: a program of this version reads the file");
  stream.Initialise(u"CALIBRATION 2.0", Versions({u"CALIBRATION 1.9"}));
  stream.FileRead(path);
  expectations.Expect(!stream.IsCompatibleVersion(false), u"a version that is too old is refused");
}

}  // namespace example
