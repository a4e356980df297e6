#include "drawing/image.hpp"

#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "drawing/colours.hpp"
#include "failure.hpp"

namespace vorquill21::tool {
namespace {

struct SurfaceDeleter {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

struct Box {
  double left;
  double top;
  double width;
  double height;

  double Right() const { return left + width; }
  double Bottom() const { return top + height; }
};

constexpr Colour kInk{0.15, 0.15, 0.15};
constexpr Colour kGrid{0.88, 0.88, 0.88};
constexpr Colour kZero{0.60, 0.60, 0.60};
constexpr double kTextSize = 13;
constexpr double kTitleSize = 16;
constexpr double kGap = 10;
constexpr double kTickLength = 5;

/// Draws a figure with one cairo context.
class Painter {
 public:
  Painter(cairo_t* cairo, const Figure& figure, ImageSize size)
      : cairo_(cairo), figure_(figure), size_(size), scales_(ScalesOf(figure, XTicks(), YTicks())) {}

  void Draw() {
    SetColour({1, 1, 1});
    cairo_paint(cairo_);
    const Box area = PanelArea();
    const double count = static_cast<double>(figure_.panels.size());
    const double width = (area.width - (count - 1) * PanelGap()) / count;
    DrawTitle(area);
    for (std::size_t i = 0; i < figure_.panels.size(); ++i) {
      const double left = area.left + static_cast<double>(i) * (width + PanelGap());
      DrawPanel(figure_.panels[i], {left, area.top, width, area.height}, i == 0);
    }
    if (figure_.HasMap()) {
      DrawColourBar({area.Right() + 2 * kGap, area.top, 1.5 * kGap, area.height});
    } else if (HasLegend()) {
      DrawLegend(area.Right() + 2 * kGap, area.top);
    }
  }

 private:
  int XTicks() const {
    constexpr double kPixelsForTick = 80;
    return std::max(2,
                    static_cast<int>(0.85 * size_.width / kPixelsForTick /
                                     static_cast<double>(std::max<std::size_t>(1, figure_.panels.size()))));
  }
  int YTicks() const {
    constexpr int kPixelsForTick = 55;
    return std::max(2, size_.height / kPixelsForTick);
  }
  double PanelGap() const { return 2 * kGap; }

  void SetColour(Colour colour) { cairo_set_source_rgb(cairo_, colour.red, colour.green, colour.blue); }

  void SelectFont(double size, bool isBold = false) {
    cairo_select_font_face(cairo_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo_, size);
  }

  double TextWidth(const std::string& text) {
    cairo_text_extents_t extents;
    cairo_text_extents(cairo_, text.c_str(), &extents);
    return extents.x_advance;
  }

  /// The baseline begins at (x, y) less `alignment` (0 to 1) times the text's width.
  void Write(const std::string& text, double x, double y, double alignment) {
    SetColour(kInk);
    cairo_move_to(cairo_, x - alignment * TextWidth(text), y);
    cairo_show_text(cairo_, text.c_str());
  }

  /// A tick's text with a minus sign instead of a hyphen.
  static std::string TickText(const Scale& scale, double tick) {
    const std::string text = scale.TickText(tick);
    return text.starts_with('-') ? "−" + text.substr(1) : text;
  }

  double WidestTick(const Scale& scale) {
    SelectFont(kTextSize);
    double widest = 0;
    for (const double tick : scale.Ticks()) widest = std::max(widest, TextWidth(TickText(scale, tick)));
    return widest;
  }

  bool HasLegend() const { return figure_.panels.front().series.size() > 1; }

  double LegendWidth() {
    if (figure_.HasMap()) return 4.5 * kGap + WidestTick(scales_.value) + kTextSize + kGap;
    if (!HasLegend()) return 0;
    SelectFont(kTextSize);
    double widest = 0;
    for (const Series& series : figure_.panels.front().series)
      widest = std::max(widest, TextWidth(series.name));
    return 2 * kGap + kSwatch + kGap + widest;
  }

  bool HasPanelTitles() const {
    return std::ranges::any_of(figure_.panels, [](const Panel& panel) { return !panel.title.empty(); });
  }

  /// What is left for the panels when titles, labels and legend have their room.
  Box PanelArea() {
    const double left = 2 * kGap + kTextSize + WidestTick(scales_.y) + kTickLength + kGap;
    const double right = 2 * kGap + LegendWidth();
    const double top =
        kGap + (figure_.title.empty() ? 0 : kTitleSize + kGap) + (HasPanelTitles() ? kTextSize + kGap : kGap);
    const double bottom = 3 * kGap + kTickLength + 2 * kTextSize;
    return {left, top, std::max(size_.width - left - right, kGap),
            std::max(size_.height - top - bottom, kGap)};
  }

  void DrawTitle(const Box& area) {
    if (figure_.title.empty()) return;
    SelectFont(kTitleSize, true);
    Write(figure_.title, area.left, kGap + kTitleSize, 0);
  }

  void DrawPanel(const Panel& panel, const Box& box, bool isFirst) {
    SelectFont(kTextSize, true);
    Write(panel.title, box.left, box.top - 0.7 * kGap, 0);
    if (panel.map) {
      DrawMap(*panel.map, box);
    } else {
      DrawGrid(box);
    }
    cairo_save(cairo_);
    cairo_rectangle(cairo_, box.left, box.top, box.width, box.height);
    cairo_clip(cairo_);
    DrawSeries(panel.series, box);
    cairo_restore(cairo_);
    SetColour(kInk);
    cairo_set_line_width(cairo_, 1);
    cairo_rectangle(cairo_, box.left, box.top, box.width, box.height);
    cairo_stroke(cairo_);
    DrawXAxis(box);
    DrawYAxis(box, isFirst);
  }

  double X(double value, const Box& box) const { return box.left + scales_.x.Position(value) * box.width; }
  double Y(double value, const Box& box) const {
    return box.Bottom() - scales_.y.Position(value) * box.height;
  }

  void Stroke(double fromX, double fromY, double toX, double toY) {
    cairo_move_to(cairo_, fromX, fromY);
    cairo_line_to(cairo_, toX, toY);
    cairo_stroke(cairo_);
  }

  /// The lines at 0 are darker.
  void DrawGrid(const Box& box) {
    SetColour(kGrid);
    cairo_set_line_width(cairo_, 1);
    for (const double tick : scales_.x.Ticks()) Stroke(X(tick, box), box.top, X(tick, box), box.Bottom());
    for (const double tick : scales_.y.Ticks()) Stroke(box.left, Y(tick, box), box.Right(), Y(tick, box));
    SetColour(kZero);
    if (scales_.x.Holds(0)) Stroke(X(0, box), box.top, X(0, box), box.Bottom());
    if (scales_.y.Holds(0)) Stroke(box.left, Y(0, box), box.Right(), Y(0, box));
  }

  void DrawXAxis(const Box& box) {
    SelectFont(kTextSize);
    for (const double tick : scales_.x.Ticks()) {
      SetColour(kInk);
      Stroke(X(tick, box), box.Bottom(), X(tick, box), box.Bottom() + kTickLength);
      Write(TickText(scales_.x, tick), X(tick, box), box.Bottom() + kTickLength + 1.2 * kTextSize, 0.5);
    }
    Write(scales_.x.Label(figure_.xLabel), box.left + box.width / 2,
          box.Bottom() + kTickLength + 2 * kTextSize + 1.3 * kGap, 0.5);
  }

  /// Only the first panel has numbers: the others have the same axis.
  void DrawYAxis(const Box& box, bool hasNumbers) {
    SelectFont(kTextSize);
    for (const double tick : scales_.y.Ticks()) {
      SetColour(kInk);
      Stroke(box.left - kTickLength, Y(tick, box), box.left, Y(tick, box));
      if (hasNumbers)
        Write(TickText(scales_.y, tick), box.left - 1.8 * kTickLength, Y(tick, box) + 0.35 * kTextSize, 1);
    }
    if (hasNumbers) WriteUpwards(scales_.y.Label(figure_.yLabel), kGap + kTextSize, box.top + box.height / 2);
  }

  void WriteUpwards(const std::string& text, double x, double y) {
    cairo_save(cairo_);
    cairo_translate(cairo_, x, y);
    cairo_rotate(cairo_, -std::numbers::pi / 2);
    Write(text, 0, 0, 0.5);
    cairo_restore(cairo_);
  }

  void DrawLineOf(const Series& series, const Box& box) {
    cairo_set_line_width(cairo_, 2);
    cairo_set_line_join(cairo_, CAIRO_LINE_JOIN_ROUND);
    bool isInterrupted = true;
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      const bool isThere = std::isfinite(series.x[i]) && std::isfinite(series.y[i]);
      if (isThere)
        (isInterrupted ? cairo_move_to : cairo_line_to)(cairo_, X(series.x[i], box), Y(series.y[i], box));
      isInterrupted = !isThere;
    }
    cairo_stroke(cairo_);
  }

  void DrawMarksOf(const Series& series, const Box& box) {
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      if (std::isfinite(series.x[i]) && std::isfinite(series.y[i]))
        DrawMark(X(series.x[i], box), Y(series.y[i], box));
    }
  }

  /// Marks stand upon lines.
  void DrawSeries(const std::vector<Series>& list, const Box& box) {
    for (std::size_t i = 0; i < list.size(); ++i) {
      SetColour(SeriesColour(i));
      if (list[i].hasLine) DrawLineOf(list[i], box);
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
      SetColour(SeriesColour(i));
      if (list[i].hasMarks) DrawMarksOf(list[i], box);
    }
  }

  void DrawMark(double x, double y) {
    constexpr double kRadius = 3;
    cairo_arc(cairo_, x, y, kRadius, 0, 2 * std::numbers::pi);
    cairo_fill(cairo_);
  }

  void DrawLegend(double left, double top) {
    const std::vector<Series>& list = figure_.panels.front().series;
    SelectFont(kTextSize);
    for (std::size_t i = 0; i < list.size(); ++i) {
      const double y = top + kTextSize / 2 + static_cast<double>(i) * 1.6 * kTextSize;
      SetColour(SeriesColour(i));
      cairo_set_line_width(cairo_, 2);
      if (list[i].hasLine) Stroke(left, y, left + kSwatch, y);
      if (list[i].hasMarks) DrawMark(left + kSwatch / 2, y);
      Write(list[i].name, left + kSwatch + kGap, y + 0.35 * kTextSize, 0);
    }
  }

  void DrawMap(const ValueMap& map, const Box& box) {
    cairo_set_antialias(cairo_, CAIRO_ANTIALIAS_NONE);
    const std::vector<double> xEdges = FieldEdges(map.x);
    const std::vector<double> yEdges = FieldEdges(map.y);
    for (std::size_t i = 0; i < map.x.size(); ++i) {
      for (std::size_t j = 0; j < map.y.size(); ++j) {
        if (!std::isfinite(map.At(i, j))) continue;
        SetColour(MapColour(scales_.value.Position(map.At(i, j))));
        const double left = X(xEdges[i], box);
        const double top = Y(yEdges[j], box);
        cairo_rectangle(cairo_, left, top, X(xEdges[i + 1], box) - left, Y(yEdges[j + 1], box) - top);
        cairo_fill(cairo_);
      }
    }
    cairo_set_antialias(cairo_, CAIRO_ANTIALIAS_DEFAULT);
  }

  void DrawColourBar(const Box& box) {
    constexpr int kSteps = 128;
    cairo_set_antialias(cairo_, CAIRO_ANTIALIAS_NONE);
    for (int i = 0; i < kSteps; ++i) {
      SetColour(MapColour((i + 0.5) / kSteps));
      cairo_rectangle(cairo_, box.left, box.Bottom() - (i + 1) * box.height / kSteps, box.width,
                      box.height / kSteps + 1);
      cairo_fill(cairo_);
    }
    cairo_set_antialias(cairo_, CAIRO_ANTIALIAS_DEFAULT);
    SelectFont(kTextSize);
    for (const double tick : scales_.value.Ticks()) {
      const double y = box.Bottom() - scales_.value.Position(tick) * box.height;
      SetColour(kInk);
      Stroke(box.Right(), y, box.Right() + kTickLength, y);
      Write(TickText(scales_.value, tick), box.Right() + 1.8 * kTickLength, y + 0.35 * kTextSize, 0);
    }
    WriteUpwards(scales_.value.Label(figure_.valueLabel), size_.width - kGap, box.top + box.height / 2);
  }

  static constexpr double kSwatch = 24;

  cairo_t* cairo_;
  const Figure& figure_;
  ImageSize size_;
  FigureScales scales_;
};

void RequireGood(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS)
    throw Failure(ExitCode::kRefused, std::string("cannot draw: ") + cairo_status_to_string(status));
}

cairo_status_t AppendBytes(void* bytes, const unsigned char* data, unsigned int length) {
  static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

void Draw(cairo_surface_t* surface, const Figure& figure, ImageSize size) {
  const Context context(cairo_create(surface));
  Painter(context.get(), figure, size).Draw();
  RequireGood(cairo_status(context.get()));
}

}  // namespace

std::string SvgOf(const Figure& figure, ImageSize size) {
  std::string bytes;
  const Surface surface(cairo_svg_surface_create_for_stream(AppendBytes, &bytes, size.width, size.height));
  Draw(surface.get(), figure, size);
  cairo_surface_finish(surface.get());
  RequireGood(cairo_surface_status(surface.get()));
  return bytes;
}

std::string PngOf(const Figure& figure, ImageSize size) {
  std::string bytes;
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.width, size.height));
  Draw(surface.get(), figure, size);
  RequireGood(cairo_surface_write_to_png_stream(surface.get(), AppendBytes, &bytes));
  return bytes;
}

}  // namespace vorquill21::tool
