#include "drawing/terminal_drawing.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace vorquill21::tool {
namespace {

/// Characters that hold two by four dots each, in one colour each.
class DotCanvas {
 public:
  DotCanvas(int columns, int lines)
      : columns_(columns),
        lines_(lines),
        dots_(static_cast<std::size_t>(columns * lines)),
        letters_(dots_.size()),
        colours_(dots_.size()) {}

  int DotsAcross() const noexcept { return 2 * columns_; }
  int DotsDown() const noexcept { return 4 * lines_; }

  void SetDot(int x, int y, int colour) {
    constexpr std::array<std::array<unsigned char, 2>, 4> kBits{
        {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}}};
    if (x < 0 || y < 0 || x >= DotsAcross() || y >= DotsDown()) return;
    const std::size_t at = Index(y / 4, x / 2);
    dots_[at] = static_cast<unsigned char>(
        dots_[at] | kBits[static_cast<std::size_t>(y % 4)][static_cast<std::size_t>(x % 2)]);
    colours_[at] = colour;
  }

  void SetLetter(int x, int y, char letter, int colour) {
    if (x < 0 || y < 0 || x >= DotsAcross() || y >= DotsDown()) return;
    letters_[Index(y / 4, x / 2)] = letter;
    colours_[Index(y / 4, x / 2)] = colour;
  }

  void DrawLine(int x, int y, int toX, int toY, int colour) {
    const int steps = std::max({std::abs(toX - x), std::abs(toY - y), 1});
    for (int i = 0; i <= steps; ++i) {
      SetDot(x + (toX - x) * i / steps, y + (toY - y) * i / steps, colour);
    }
  }

  std::string Line(int line, bool inColour) const {
    std::string text;
    for (int column = 0; column < columns_; ++column) {
      const std::size_t at = Index(line, column);
      const std::string character = letters_[at] != 0 ? std::string(1, letters_[at]) : Braille(dots_[at]);
      const bool isColoured = inColour && (dots_[at] != 0 || letters_[at] != 0);
      text +=
          isColoured ? "\033[38;5;" + std::to_string(colours_[at]) + "m" + character + "\033[0m" : character;
    }
    return text;
  }

 private:
  std::size_t Index(int line, int column) const {
    return static_cast<std::size_t>(line) * static_cast<std::size_t>(columns_) +
           static_cast<std::size_t>(column);
  }

  static std::string Braille(unsigned char dots) {
    if (dots == 0) return " ";
    return {'\xE2', static_cast<char>(0xA0 | (dots >> 6)), static_cast<char>(0x80 | (dots & 0x3F))};
  }

  int columns_;
  int lines_;
  std::vector<unsigned char> dots_;
  std::vector<char> letters_;
  std::vector<int> colours_;
};

constexpr int kSmallest = 8;

int TerminalColour(std::size_t series) {
  constexpr std::array<int, 8> kColours{33, 208, 36, 175, 117, 214, 245, 137};
  return kColours[series % kColours.size()];
}

char LetterOf(std::size_t series) {
  constexpr std::size_t kLetters = 26;
  return static_cast<char>('a' + series % kLetters);
}

std::string AtRight(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

class TextPainter {
 public:
  TextPainter(const Figure& figure, int columns, int lines, bool inColour)
      : figure_(figure),
        scales_(ScalesOf(figure, std::max(2, columns / 14), std::max(2, lines / 4))),
        inColour_(inColour) {
    for (const double tick : scales_.y.Ticks())
      tickWidth_ = std::max(tickWidth_, scales_.y.TickText(tick).size());
    columns_ = std::max(columns - static_cast<int>(tickWidth_) - 2, kSmallest);
    lines_ = std::max(lines, kSmallest);
  }

  std::string Draw() const {
    std::string text;
    if (!figure_.title.empty()) text += figure_.title + "\n";
    for (const Panel& panel : figure_.panels) {
      if (!panel.title.empty()) text += panel.title + "\n";
      const std::string yLabel = scales_.y.Label(figure_.yLabel);
      if (!yLabel.empty()) text += yLabel + "\n";
      text += Framed(panel.map ? MapLines(*panel.map) : SeriesLines(panel));
    }
    return text + (figure_.HasMap() ? MapLegend() : Legend());
  }

 private:
  std::vector<std::string> SeriesLines(const Panel& panel) const {
    DotCanvas canvas(columns_, lines_);
    for (std::size_t i = 0; i < panel.series.size(); ++i) DrawSeries(panel.series[i], i, canvas);
    if (panel.series.size() > 1) {
      for (std::size_t i = 0; i < panel.series.size(); ++i) NameEnd(panel.series[i], i, canvas);
    }
    std::vector<std::string> lines;
    for (int line = 0; line < lines_; ++line) lines.push_back(canvas.Line(line, inColour_));
    return lines;
  }

  int X(double value, const DotCanvas& canvas) const {
    return static_cast<int>(std::lround(scales_.x.Position(value) * (canvas.DotsAcross() - 1)));
  }
  int Y(double value, const DotCanvas& canvas) const {
    return static_cast<int>(std::lround((1 - scales_.y.Position(value)) * (canvas.DotsDown() - 1)));
  }

  void DrawSeries(const Series& series, std::size_t index, DotCanvas& canvas) const {
    bool isInterrupted = true;
    int lastX = 0;
    int lastY = 0;
    for (std::size_t i = 0; i < series.x.size(); ++i) {
      const bool isThere = std::isfinite(series.x[i]) && std::isfinite(series.y[i]);
      if (isThere) {
        const int x = X(series.x[i], canvas);
        const int y = Y(series.y[i], canvas);
        if (series.hasLine && !isInterrupted) canvas.DrawLine(lastX, lastY, x, y, TerminalColour(index));
        canvas.SetDot(x, y, TerminalColour(index));
        if (series.hasMarks) canvas.SetLetter(x, y, 'o', TerminalColour(index));
        lastX = x;
        lastY = y;
      }
      isInterrupted = !isThere;
    }
  }

  void NameEnd(const Series& series, std::size_t index, DotCanvas& canvas) const {
    for (std::size_t i = series.x.size(); i-- > 0;) {
      if (!std::isfinite(series.x[i]) || !std::isfinite(series.y[i])) continue;
      canvas.SetLetter(X(series.x[i], canvas), Y(series.y[i], canvas), LetterOf(index),
                       TerminalColour(index));
      return;
    }
  }

  static const char* Density(double position) {
    constexpr std::array<const char*, 5> kDensities{" ", "░", "▒", "▓", "█"};
    return kDensities[static_cast<std::size_t>(std::clamp(position * 5, 0.0, 4.0))];
  }

  /// The index of the field at a position of its axis.
  static std::size_t Nearest(const std::vector<double>& centres, const Scale& scale, double position) {
    const auto distance = [&](double centre) { return std::abs(scale.Position(centre) - position); };
    const auto nearest = std::ranges::min_element(centres, {}, distance);
    return static_cast<std::size_t>(nearest - centres.begin());
  }

  std::vector<std::string> MapLines(const ValueMap& map) const {
    std::vector<std::string> lines;
    for (int line = 0; line < lines_; ++line) {
      const std::size_t yIndex = Nearest(map.y, scales_.y, 1 - (line + 0.5) / lines_);
      std::string& text = lines.emplace_back();
      for (int column = 0; column < columns_; ++column) {
        const std::size_t xIndex = Nearest(map.x, scales_.x, (column + 0.5) / columns_);
        text += Density(scales_.value.Position(map.At(xIndex, yIndex)));
      }
    }
    return lines;
  }

  /// The lines with the y axis on their left and the x axis below them.
  std::string Framed(const std::vector<std::string>& lines) const {
    std::vector<std::string> numbers(lines.size());
    for (const double tick : scales_.y.Ticks()) {
      numbers[static_cast<std::size_t>(std::lround((1 - scales_.y.Position(tick)) * (lines_ - 1)))] =
          scales_.y.TickText(tick);
    }
    std::string text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      text += AtRight(numbers[i], tickWidth_) + (numbers[i].empty() ? " │" : " ┤") + lines[i];
      text.erase(text.find_last_not_of(' ') + 1);
      text += '\n';
    }
    return text + XAxis();
  }

  std::string XAxis() const {
    const std::string margin(tickWidth_ + 1, ' ');
    std::vector<std::string> rule(static_cast<std::size_t>(columns_), "─");
    std::string numbers(static_cast<std::size_t>(columns_) + tickWidth_ + 2, ' ');
    for (const double tick : scales_.x.Ticks()) {
      const auto column = static_cast<std::size_t>(std::lround(scales_.x.Position(tick) * (columns_ - 1)));
      rule[column] = "┬";
      const std::string number = scales_.x.TickText(tick);
      const std::size_t at = tickWidth_ + 2 + column - std::min(tickWidth_ + 2 + column, number.size() / 2);
      numbers.resize(std::max(numbers.size(), at + number.size()), ' ');
      numbers.replace(at, number.size(), number);
    }
    std::string text = margin + "└";
    for (const std::string& piece : rule) text += piece;
    numbers.erase(numbers.find_last_not_of(' ') + 1);
    text += "\n" + numbers + "\n";
    const std::string label = scales_.x.Label(figure_.xLabel);
    if (!label.empty()) text += margin + " " + label + "\n";
    return text;
  }

  std::string Legend() const {
    const std::vector<Series>& list = figure_.panels.front().series;
    if (list.size() < 2) return {};
    std::string text;
    for (std::size_t i = 0; i < list.size(); ++i) {
      const std::string letter(1, LetterOf(i));
      text += inColour_ ? "\033[38;5;" + std::to_string(TerminalColour(i)) + "m" + letter + "\033[0m "
                        : letter + " ";
      text += list[i].name + "\n";
    }
    return text;
  }

  std::string MapLegend() const {
    constexpr int kDensities = 5;
    std::string text = scales_.value.Label(figure_.valueLabel);
    if (!text.empty()) text += "\n";
    const Scale& scale = scales_.value;
    for (int i = 0; i < kDensities; ++i) {
      const auto bound = [&scale](int step) {
        return scale.TickText(scale.From() + (scale.To() - scale.From()) * step / kDensities);
      };
      text += std::string("\"") + Density((i + 0.5) / kDensities) + "\" " + bound(i) + " to " + bound(i + 1) +
              "\n";
    }
    return text;
  }

  const Figure& figure_;
  FigureScales scales_;
  bool inColour_;
  std::size_t tickWidth_ = 0;
  int columns_;
  int lines_;
};

}  // namespace

std::string TextOf(const Figure& figure, int columns, int lines, bool inColour) {
  return TextPainter(figure, columns, lines, inColour).Draw();
}

}  // namespace vorquill21::tool
