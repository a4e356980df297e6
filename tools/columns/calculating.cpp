#include <algorithm>
#include <cmath>

#include "columns/column_table.hpp"
#include "columns/commands.hpp"

namespace vorquill21::tool {
namespace {

struct StatsCommand {
  ColumnOptions options;
  std::vector<std::string> columns;

  void Declare(CLI::App& command) {
    options.Declare(command);
    options.DeclareRows(command);
    command.add_option("COLUMN", columns, "Only these columns: headers, or numbers counted from 0")
        ->type_name("");
  }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnTable table = options.Load(session);
    if (table.Rows() == 0) throw Failure(ExitCode::kRefused, options.file + " has no rows of values");
    std::vector<std::int32_t> indices;
    for (const std::string& name : columns) indices.push_back(table.ColumnNamed(name));
    if (columns.empty()) {
      for (std::int32_t column = 0; column < table.Columns(); ++column) indices.push_back(column);
    }
    std::vector<Result::Row> rows;
    for (const std::int32_t column : indices) {
      rows.push_back(
          Statistics(table.Header(column), options.Values(table, column), options.FirstRow(table)));
    }
    result.AddRecords("columns",
                      {{"header", "column"},
                       {"count", "count"},
                       {"mean", "mean"},
                       {"standard_deviation", "standard deviation"},
                       {"standard_deviation_population", "  of the population"},
                       {"variance", "variance"},
                       {"variance_population", "  of the population"},
                       {"rms", "root mean square"},
                       {"minimum", "minimum"},
                       {"minimum_row", "  in row"},
                       {"maximum", "maximum"},
                       {"maximum_row", "  in row"}},
                      std::move(rows));
    return ExitCode::kGood;
  }

 private:
  static Result::Row Statistics(const std::string& header, const std::vector<double>& values,
                                std::int32_t firstRow) {
    const CStatistics statistics;
    std::int32_t leastIndex = 0;
    std::int32_t greatestIndex = 0;
    const double least = statistics.Minimum(values, &leastIndex);
    const double greatest = statistics.Maximum(values, &greatestIndex);
    return {header,
            values.size(),
            statistics.ArithmeticMean(values),
            statistics.StandardDeviation(values),
            statistics.StandardDeviationPop(values),
            statistics.Variance(values),
            statistics.VariancePop(values),
            statistics.RMS(values),
            least,
            firstRow + leastIndex,
            greatest,
            firstRow + greatestIndex};
  }
};

struct InterpCommand {
  ColumnOptions options;
  std::string x;
  std::string y;
  std::vector<std::string> points;
  bool extrapolates = false;

  void Declare(CLI::App& command) {
    options.Declare(command);
    options.DeclareRows(command);
    DeclareColumn(command, "-x,--x", x, "The column of the nodes, which ascends or descends");
    DeclareColumn(command, "-y,--y", y, "The column of the values");
    command.add_option("POINT", points, "Where to interpolate; \"-\" reads numbers from standard input")
        ->required()
        ->type_name("");
    command.add_flag("--extrapolate", extrapolates,
                     "Outside the table go on straight; otherwise the nearest end counts");
  }

  ExitCode Run(Session& session, Result& result) const {
    const std::vector<double> wanted = Points(session);
    const ColumnTable table = options.Load(session);
    const std::int32_t xColumn = table.ColumnNamed(x);
    const std::vector<double> nodes = options.Values(table, xColumn);
    const std::vector<double> values = options.Values(table, table.ColumnNamed(y));
    result.ReportFindings();
    RequireMonotonic(nodes, table.Header(xColumn));
    std::vector<Result::Row> rows;
    const auto [least, greatest] = std::ranges::minmax(nodes);
    for (const double point : wanted) {
      const bool isInside = least <= point && point <= greatest;
      const double value = CInterpolate().OneDLinearInterpolate(
          extrapolates ? eInterpExtrapolate : eInterpClip, nodes, values, point);
      rows.push_back({point, value, isInside});
      if (!isInside)
        result.AddFinding(
            {"outside", PlainText(point) + " lies outside the table", table.Header(xColumn), 0});
    }
    result.AddTable("points", {{"x", "X"}, {"y", "Y"}, {"inside", "INSIDE"}}, std::move(rows));
    return ExitCode::kGood;
  }

 private:
  std::vector<double> Points(Session& session) const {
    std::vector<double> numbers;
    for (const std::string& point : points) {
      if (point != "-") {
        numbers.push_back(NumberArgument(point));
        continue;
      }
      if (options.file == "-")
        throw Failure(ExitCode::kUsage, "the file and the points cannot both be standard input");
      std::istringstream words(session.ReadFile(point));
      for (std::string word; words >> word;) numbers.push_back(NumberArgument(word));
    }
    return numbers;
  }

  static void RequireMonotonic(const std::vector<double>& nodes, const std::string& header) {
    const Variant array = BoundedArray<double>(nodes);
    if (nodes.size() < 2) throw Failure(ExitCode::kRefused, "a table needs two rows");
    const CMathUtils utils;
    const Text name = FromUtf8(header);
    if (utils.ArrayIsMonotonic1D(array, emsPositive, name) ||
        utils.ArrayIsMonotonic1D(array, emsNegative, name))
      return;
    throw Failure(ExitCode::kRefused,
                  header + " neither ascends nor descends; --rows chooses a part that does");
  }
};

struct FitCommand {
  FitOptions options;
  std::string z;
  bool wantsResiduals = false;

  void Declare(CLI::App& command) {
    options.Declare(command);
    command.add_option("-z,--z", z, "The column of z: fit a surface over x and y")->type_name("COLUMN");
    command.add_flag("--residuals", wantsResiduals, "List every point with its fitted value and residual");
  }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnOptions& columns = options.columns;
    const ColumnTable table = columns.Load(session);
    const std::vector<double> xs = columns.Values(table, table.ColumnNamed(options.x));
    const std::vector<double> ys = columns.Values(table, table.ColumnNamed(options.y));
    if (xs.empty()) throw Failure(ExitCode::kRefused, columns.file + " has no rows of values");
    result.Add("order", "order", options.order);
    result.Add("points", "points", xs.size());
    try {
      if (z.empty()) {
        FitCurve(xs, ys, result);
      } else {
        FitSurface(xs, ys, columns.Values(table, table.ColumnNamed(z)), result);
      }
    } catch (const LibraryError& error) {
      throw options.FailureToFit(error);
    }
    return ExitCode::kGood;
  }

 private:
  void FitCurve(const std::vector<double>& xs, const std::vector<double>& ys, Result& result) const {
    const CInterpolate interpolate;
    BoundedArray<double> coefficients;
    double deviation = 0;
    interpolate.OneDPolynomialFit(xs, ys, options.order, coefficients, &deviation);
    Value terms = Value::array();
    for (std::int32_t power = 0; power <= options.order; ++power) {
      result.Add("", "x^" + std::to_string(power), coefficients(power + 1));
      terms.push_back(coefficients(power + 1));
    }
    result.Add("coefficients", "", terms);
    result.Add("standard_deviation", "standard deviation", deviation);
    std::vector<double> fitted;
    for (const double at : xs) fitted.push_back(interpolate.OneDPolynomialInterpolate(at, coefficients));
    DescribeResiduals({&xs}, ys, fitted, result);
  }

  void FitSurface(const std::vector<double>& xs, const std::vector<double>& ys, const std::vector<double>& zs,
                  Result& result) const {
    const CInterpolate interpolate;
    BoundedArray<double> coefficients;
    double deviation = 0;
    interpolate.TwoDPolynomialFit(xs, ys, zs, options.order, coefficients, &deviation);
    Value terms = Value::array();
    for (std::int32_t i = 0; i <= options.order; ++i) {
      Value row = Value::array();
      for (std::int32_t j = 0; j <= options.order; ++j) {
        row.push_back(coefficients(i, j));
        if (i + j <= options.order)
          result.Add("", "y^" + std::to_string(i) + " x^" + std::to_string(j), coefficients(i, j));
      }
      terms.push_back(std::move(row));
    }
    result.Add("coefficients", "", terms);
    result.Add("rms_deviation", "rms deviation", deviation);
    std::vector<double> fitted;
    for (std::size_t i = 0; i < xs.size(); ++i)
      fitted.push_back(interpolate.TwoDPolynomialInterpolate(xs[i], ys[i], coefficients));
    DescribeResiduals({&xs, &ys}, zs, fitted, result);
  }

  /// A residual is the measured value less the fitted one.
  void DescribeResiduals(const std::vector<const std::vector<double>*>& arguments,
                         const std::vector<double>& measured, const std::vector<double>& fitted,
                         Result& result) const {
    std::vector<double> residuals;
    for (std::size_t i = 0; i < measured.size(); ++i) residuals.push_back(measured[i] - fitted[i]);
    const auto [least, greatest] = std::ranges::minmax(residuals);
    result.Add("residual_minimum", "least residual", least);
    result.Add("residual_maximum", "greatest residual", greatest);
    result.Add("residual_rms", "rms of residuals", CStatistics().RMS(residuals));
    if (!wantsResiduals) return;
    std::vector<Result::Row> rows;
    for (std::size_t i = 0; i < measured.size(); ++i) {
      Result::Row row;
      for (const auto* argument : arguments) row.emplace_back((*argument)[i]);
      row.insert(row.end(), {measured[i], fitted[i], residuals[i]});
      rows.push_back(std::move(row));
    }
    std::vector<Result::Column> headings{{"x", "X"}, {"y", "Y"}};
    if (arguments.size() > 1) headings.push_back({"z", "Z"});
    headings.push_back({"fitted", "FITTED"});
    headings.push_back({"residual", "RESIDUAL"});
    result.AddTable("residuals", std::move(headings), std::move(rows));
  }
};

}  // namespace

void AddStats(CLI::App& app, Work& chosen) {
  AddCommand<StatsCommand>(app, chosen, "stats", "Mean, deviations and extremes of columns",
                           "stats load-cell-calibration.txt Deflection");
}

void AddInterp(CLI::App& app, Work& chosen) {
  AddCommand<InterpCommand>(app, chosen, "interp", "Interpolate in a table of two columns",
                            "interp load-cell-calibration.txt --rows 1:20 -x Deflection -y Load 1 1.5");
}

void AddFit(CLI::App& app, Work& chosen) {
  AddCommand<FitCommand>(app, chosen, "fit", "Fit a polynomial to columns: a curve, or a surface with --z",
                         "fit load-cell-calibration.txt -x Load -y Deflection --order 2");
}

}  // namespace vorquill21::tool
