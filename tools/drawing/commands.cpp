#include <algorithm>
#include <numeric>

#include "columns/column_table.hpp"
#include "data_file/pages.hpp"
#include "drawing/image.hpp"
#include "drawing/terminal_drawing.hpp"
#include "program/arguments.hpp"

namespace vorquill21::tool {
namespace {

/// Where a drawing goes, how large it is and what stands around it.
struct DrawingOptions {
  std::string output;
  std::string format;
  std::string title;
  std::string xLabel;
  std::string yLabel;
  ImageSize size;
  const CLI::Option* hasTitle = nullptr;

  void Declare(CLI::App& command) {
    command
        .add_option("-o,--output", output,
                    "Where to write the image (.svg or .png); without it the terminal shows the drawing")
        ->type_name("FILE");
    LimitTo(command.add_option("--format", format, "svg, png or text (as the file's name ends)"),
            {"svg", "png", "text"});
    hasTitle = command.add_option("--title", title, "Above the drawing")->type_name("TEXT");
    command.add_option("--x-label", xLabel, "Below the x axis")->type_name("TEXT");
    command.add_option("--y-label", yLabel, "Beside the y axis")->type_name("TEXT");
    command.add_option("--width", size.width, "Of the image in pixels")
        ->capture_default_str()
        ->check(NumberBetween(200, 10000))
        ->type_name("N");
    command.add_option("--height", size.height, "Of the image in pixels")
        ->capture_default_str()
        ->check(NumberBetween(150, 10000))
        ->type_name("N");
  }

  ExitCode Write(Figure& figure, Session& session, Result& result) const {
    if (!xLabel.empty()) figure.xLabel = xLabel;
    if (!yLabel.empty()) figure.yLabel = yLabel;
    if (hasTitle->count() > 0) figure.title = title;
    MakeVisible(figure);
    const std::string kind = Format();
    std::string drawing;
    if (kind == "text") {
      const Terminal::Size terminal = session.GetTerminal().OutputSize();
      const bool inColour = output.empty() && session.GetTerminal().OutputHasColour() && !session.wantsJson;
      drawing = TextOf(figure, terminal.columns, std::min(std::max(terminal.lines - 6, 10), 40), inColour);
    } else {
      drawing = kind == "svg" ? SvgOf(figure, size) : PngOf(figure, size);
    }
    Describe(figure, kind, result);
    if (!output.empty()) {
      session.WriteFile(output, drawing);
      if (output == "-") result.Silence();
      return ExitCode::kGood;
    }
    if (kind != "text") throw Failure(ExitCode::kUsage, "an image needs --output; \"-\" is standard output");
    result.Add("drawing", "", drawing);
    result.AddText(drawing);
    return ExitCode::kGood;
  }

 private:
  std::string Format() const {
    if (!format.empty()) return format;
    if (output.empty()) return "text";
    for (const char* const known : {"svg", "png"}) {
      if (output.ends_with(std::string(".") + known)) return known;
    }
    throw Failure(ExitCode::kUsage, "--format is needed, as " + output + " ends in neither .svg nor .png");
  }

  static void MakeVisible(Figure& figure) {
    for (std::string* text : {&figure.title, &figure.xLabel, &figure.yLabel, &figure.valueLabel})
      *text = Visible(*text);
    for (Panel& panel : figure.panels) {
      panel.title = Visible(panel.title);
      for (Series& series : panel.series) series.name = Visible(series.name);
    }
  }

  void Describe(const Figure& figure, const std::string& kind, Result& result) const {
    result.Add("format", "", kind);
    result.Add("file", "", output.empty() ? Value() : Value(output));
    result.Add("panels", "", figure.panels.size());
    Value names = Value::array();
    for (const Series& series : figure.panels.front().series) names.push_back(series.name);
    result.Add("series", "", names);
  }
};

struct PlotCurvesCommand {
  ColumnOptions options;
  DrawingOptions drawing;
  std::string x;
  std::vector<std::string> ys;
  bool isScatter = false;

  void Declare(CLI::App& command) {
    options.Declare(command);
    options.DeclareRows(command);
    DeclareColumn(command, "-x,--x", x, "The column of x");
    command.add_option("-y,--y", ys, "A column of y; may be given several times")
        ->required()
        ->type_name("COLUMN")
        ->allow_extra_args(false);
    command.add_flag("--scatter", isScatter, "Marks instead of lines");
    drawing.Declare(command);
  }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnTable table = options.Load(session);
    const std::int32_t xColumn = table.ColumnNamed(x);
    Figure figure{.xLabel = table.Header(xColumn), .panels = {Panel{}}};
    for (const std::string& name : ys) {
      const std::int32_t column = table.ColumnNamed(name);
      figure.panels.front().series.push_back({table.Header(column), options.Values(table, xColumn),
                                              options.Values(table, column), !isScatter, isScatter});
    }
    if (ys.size() == 1) figure.yLabel = figure.panels.front().series.front().name;
    return drawing.Write(figure, session, result);
  }
};

struct PlotFitCommand {
  FitOptions options;
  DrawingOptions drawing;

  void Declare(CLI::App& command) {
    options.Declare(command);
    drawing.Declare(command);
  }

  ExitCode Run(Session& session, Result& result) const {
    const ColumnOptions& columns = options.columns;
    const ColumnTable table = columns.Load(session);
    const std::int32_t xColumn = table.ColumnNamed(options.x);
    const std::int32_t yColumn = table.ColumnNamed(options.y);
    const Series points{table.Header(yColumn), columns.Values(table, xColumn), columns.Values(table, yColumn),
                        false, true};
    if (points.x.empty()) throw Failure(ExitCode::kRefused, columns.file + " has no rows of values");
    Figure figure{.xLabel = table.Header(xColumn), .yLabel = table.Header(yColumn), .panels = {Panel{}}};
    figure.panels.front().series = {points, Curve(points)};
    return drawing.Write(figure, session, result);
  }

 private:
  Series Curve(const Series& points) const {
    constexpr int kSteps = 400;
    const CInterpolate interpolate;
    BoundedArray<double> coefficients;
    try {
      interpolate.OneDPolynomialFit(points.x, points.y, options.order, coefficients);
    } catch (const LibraryError& error) {
      throw options.FailureToFit(error);
    }
    Series curve{"fit of order " + std::to_string(options.order), {}, {}};
    const auto [least, greatest] = std::ranges::minmax(points.x);
    for (int i = 0; i <= kSteps; ++i) {
      curve.x.push_back(least + (greatest - least) * i / kSteps);
      curve.y.push_back(interpolate.OneDPolynomialInterpolate(curve.x.back(), coefficients));
    }
    return curve;
  }
};

std::vector<std::string> SplitList(const std::string& list) {
  std::vector<std::string> parts;
  std::istringstream stream(list);
  for (std::string part; std::getline(stream, part, ',');) parts.push_back(part);
  return parts;
}

/// Numbers for `count` rows or columns: listed with commas, "FROM:TO" in even steps, or 1, 2, 3, ...
std::vector<double> AxisValues(const std::string& text, std::size_t count) {
  std::vector<double> values(count);
  std::iota(values.begin(), values.end(), 1.0);
  if (text.empty()) return values;
  const std::size_t colon = text.find(':');
  if (colon != std::string::npos) {
    const double from = NumberArgument(text.substr(0, colon));
    const double to = NumberArgument(text.substr(colon + 1));
    const double steps = std::max(1.0, static_cast<double>(count) - 1);
    for (std::size_t i = 0; i < count; ++i) values[i] = from + (to - from) * static_cast<double>(i) / steps;
    return values;
  }
  const std::vector<std::string> parts = SplitList(text);
  if (parts.size() != count)
    throw Failure(ExitCode::kUsage,
                  Counted(count, "number") + " needed, not " + std::to_string(parts.size()));
  std::ranges::transform(parts, values.begin(), NumberArgument);
  return values;
}

struct PlotTableCommand {
  TableOptions options;
  std::string style = "curves";
  std::string xValues;
  std::string yValues;
  std::string curveNames;
  std::string pageNames;
  std::string valueLabel;
  DrawingOptions drawing;

  void Declare(CLI::App& command) {
    options.Declare(command);
    LimitTo(command
                .add_option("--as", style,
                            "curves: one for each column over the rows; map: rows and columns as axes")
                ->capture_default_str(),
            {"curves", "map"});
    command
        .add_option("--x-values", xValues,
                    "What the rows stand for: FROM:TO in even steps, or numbers with commas")
        ->type_name("LIST");
    command.add_option("--y-values", yValues, "What the columns of a map stand for")->type_name("LIST");
    command.add_option("--curve-names", curveNames, "Names of the columns, with commas")->type_name("LIST");
    command.add_option("--page-names", pageNames, "Names of the pages, with commas")->type_name("LIST");
    command.add_option("--value-label", valueLabel, "Beside the colours of a map")->type_name("TEXT");
    drawing.Declare(command);
  }

  ExitCode Run(Session& session, Result& result) const {
    const std::vector<TablePage> pages = options.Load(session);
    const bool isMap = style == "map";
    Figure figure{.title = options.name,
                  .xLabel = "row",
                  .yLabel = isMap ? "column" : "",
                  .valueLabel = valueLabel.empty() ? options.name : valueLabel,
                  .hasCountsOnX = xValues.empty(),
                  .hasCountsOnY = isMap && yValues.empty()};
    const std::vector<std::string> names = SplitList(pageNames);
    for (std::size_t i = 0; i < pages.size(); ++i) {
      Panel panel = isMap ? MapPanel(pages[i].cells) : CurvePanel(pages[i].cells);
      if (i < names.size()) {
        panel.title = names[i];
      } else if (pages[i].number > 0) {
        panel.title = "page " + std::to_string(pages[i].number);
      }
      figure.panels.push_back(std::move(panel));
    }
    return drawing.Write(figure, session, result);
  }

 private:
  Panel CurvePanel(const BoundedArray<double>& cells) const {
    const auto rows = static_cast<std::size_t>(cells.BoundsOf(1).Count());
    const std::vector<double> x = AxisValues(xValues, rows);
    const std::vector<std::string> names = SplitList(curveNames);
    Panel panel;
    for (std::int32_t column = 0; column <= cells.UpperBound(2); ++column) {
      const auto index = static_cast<std::size_t>(column);
      Series series{index < names.size() ? names[index] : "column " + std::to_string(column + 1), x, {}};
      for (std::int32_t row = 0; row <= cells.UpperBound(1); ++row) series.y.push_back(cells(row, column));
      panel.series.push_back(std::move(series));
    }
    return panel;
  }

  Panel MapPanel(const BoundedArray<double>& cells) const {
    ValueMap map{AxisValues(xValues, static_cast<std::size_t>(cells.BoundsOf(1).Count())),
                 AxisValues(yValues, static_cast<std::size_t>(cells.BoundsOf(2).Count())),
                 {}};
    map.values.assign(cells.Elements().begin(), cells.Elements().end());
    return Panel{"", {}, std::move(map)};
  }
};

}  // namespace

void AddPlotCommands(CLI::App& app, Work& chosen) {
  CLI::App& plot = AddGroup(app, "plot", "Draw columns and tables as SVG, as PNG or in the terminal",
                            "plot table tyre.txt \"LATERAL FORCE DATA\" --page 2");
  AddCommand<PlotCurvesCommand>(plot, chosen, "curves", "Draw columns over another column",
                                "plot curves load-cell-calibration.txt --rows 1:20 -x Load -y Deflection");
  AddCommand<PlotFitCommand>(plot, chosen, "fit", "Draw points and the polynomial that fits them",
                             "plot fit load-cell-calibration.txt -x Load -y Deflection --order 2 -o fit.svg");
  AddCommand<PlotTableCommand>(plot, chosen, "table",
                               "Draw the pages of a table as families of curves or as maps",
                               "plot table tyre.txt \"LATERAL FORCE DATA\" --as map -o forces.png");
}

}  // namespace vorquill21::tool
