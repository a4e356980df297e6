#include "fitting.hpp"

#include <cmath>

namespace example {

using namespace vorquill21;

namespace {

/// The elements of an array of the importer from `from` on, as the doubles that the numeric classes take.
std::vector<double> Doubles(const Variant& values, std::int32_t from, std::int32_t count) {
  std::vector<double> doubles;
  for (std::int32_t i = from; i < from + count; ++i) doubles.push_back(ArrayElement(values, i).As<double>());
  return doubles;
}

constexpr std::int32_t kPoints = Calibration::kRuns * Calibration::kPointsPerRun;

/// Fits a polynomial and says what it is.
CalibrationFit Fit(const CInterpolate& interpolate, const std::vector<double>& loads,
                   const std::vector<double>& deflections, std::int32_t order) {
  CalibrationFit fit;
  interpolate.OneDPolynomialFit(loads, deflections, order, fit.coefficients, &fit.deviation);
  Text said = u"order " + Shown(order) + u": ";
  for (std::int32_t power = 0; power <= order; ++power) {
    said += u"b" + Shown(power) + u" = " + Shown(fit.coefficients(power + 1)) + u", ";
  }
  Say(said + u"standard deviation " + Shown(fit.deviation));
  return fit;
}

/// The coefficient that the header of the calibration's file states.
double Certified(TextView file, std::int32_t power) {
  const Text name = u"Certified b" + Shown(power) + u" = ";
  const std::size_t begin = file.find(name) + name.size();
  const std::size_t length = file.find_first_of(u"\r\n", begin) - begin;
  return ToDouble(file.substr(begin, length), u'.');
}

void CompareWithCertified(const Session& session, const CalibrationFit& fit, TextView path,
                          Expectations& expectations) {
  Text file;
  const bool isRead = session.library.LibFile()->FileReadAsString(path, file);
  expectations.Expect(isRead, u"the header of the calibration is read");
  if (!isRead) return;
  constexpr double kTwelveDigits = 1e-12;  // what is left of decimal readings rounded to doubles
  bool allAgree = true;
  for (std::int32_t power = 0; power <= 2; ++power) {
    const double certified = Certified(file, power);
    Say(u"certified b" + Shown(power) + u" = " + Shown(certified));
    allAgree = allAgree && std::abs(fit.coefficients(power + 1) / certified - 1.0) < kTwelveDigits;
  }
  expectations.Expect(allAgree, u"the coefficients agree with the certified ones");
  if (allAgree) Say(u"order 2 agrees with all of them to twelve digits");
}

void LookAtResiduals(const Session& session, const CalibrationFit& fit, const std::vector<double>& loads,
                     const std::vector<double>& deflections) {
  const CInterpolate& interpolate = *session.library.LibInterpolate();
  std::vector<double> residuals;
  for (std::size_t i = 0; i < loads.size(); ++i) {
    residuals.push_back(deflections[i] - interpolate.OneDPolynomialInterpolate(loads[i], fit.coefficients));
  }
  const CStatistics& statistics = *session.library.LibStatistics();
  std::int32_t greatest = 0;
  std::int32_t least = 0;
  const double maximum = statistics.Maximum(residuals, &greatest);
  const double minimum = statistics.Minimum(residuals, &least);
  const auto atLoad = [&loads](std::int32_t point) {
    return u" at " + Shown(loads[static_cast<std::size_t>(point)]);
  };
  Say(u"residuals: from " + Shown(minimum) + atLoad(least) + u" to " + Shown(maximum) + atLoad(greatest));
  Say(u"residuals: standard deviation " + Shown(statistics.StandardDeviation(residuals)) + u", RMS " +
      Shown(statistics.RMS(residuals)));
}

}  // namespace

CalibrationFit FitCalibration(const Session& session, const Calibration& calibration, TextView folder,
                              Expectations& expectations) {
  SayTitle(u"Fit: deflection over load");
  const CInterpolate& interpolate = *session.library.LibInterpolate();
  const std::vector<double> loads = Doubles(calibration.loads, 0, kPoints);
  const std::vector<double> deflections = Doubles(calibration.deflections, 0, kPoints);
  const CalibrationFit line = Fit(interpolate, loads, deflections, 1);
  CalibrationFit parabola = Fit(interpolate, loads, deflections, 2);
  expectations.Expect(parabola.deviation < line.deviation, u"order 2 fits better than order 1");
  CompareWithCertified(session, parabola, Text(folder).append(u"/load-cell-calibration.txt"), expectations);
  LookAtResiduals(session, parabola, loads, deflections);
  return parabola;
}

void InvertReadings(const Session& session, const Calibration& calibration, Expectations& expectations) {
  SayTitle(u"Interpolate: the loads of readings, from run 1");
  const CInterpolate& interpolate = *session.library.LibInterpolate();
  const std::vector<double> loads = Doubles(calibration.loads, 0, Calibration::kPointsPerRun);
  const std::vector<double> deflections = Doubles(calibration.deflections, 0, Calibration::kPointsPerRun);
  const auto loadOf = [&](EOutOfBoundsBehaviour behaviour, double reading) {
    return interpolate.OneDLinearInterpolate(behaviour, deflections, loads, reading);
  };
  Say(u"reading 1: load " + Shown(loadOf(eInterpClip, 1.0)));
  for (const double outside : {0.05, 2.25}) {
    Say(u"reading " + Shown(outside) + u", outside the run: load " + Shown(loadOf(eInterpClip, outside)) +
        u" clipped, " + Shown(loadOf(eInterpExtrapolate, outside)) + u" extrapolated");
  }
  expectations.Expect(loadOf(eInterpClip, 2.25) == loads.back(), u"clipping gives the last load");
}

}  // namespace example
