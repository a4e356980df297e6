#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vorquill21::tool {

/// Points that belong together. Points that are not finite are left out, and interrupt the line.
struct Series {
  std::string name;
  std::vector<double> x;
  std::vector<double> y;
  bool hasLine = true;
  bool hasMarks = false;
};

/// A value for each pair of an x and a y, drawn as a field of its colour around the pair.
struct ValueMap {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<double> values;  ///< all y of the first x, then of the next one

  double At(std::size_t xIndex, std::size_t yIndex) const { return values[xIndex * y.size() + yIndex]; }
};

/// Where the fields around `centres` begin and end: half way to the neighbours. One more than there are
/// centres, of which there is at least one.
std::vector<double> FieldEdges(const std::vector<double>& centres);

/// Series, or a map, between two axes.
struct Panel {
  std::string title = {};
  std::vector<Series> series = {};
  std::optional<ValueMap> map = {};
};

/// Panels beside each other with the same axes and one legend.
struct Figure {
  std::string title = {};
  std::string xLabel = {};
  std::string yLabel = {};
  std::string valueLabel = {};  ///< of the colours of maps
  bool hasCountsOnX = false;    ///< rows and columns that are only counted have whole numbers on their axes
  bool hasCountsOnY = false;
  std::vector<Panel> panels = {};

  bool HasMap() const { return !panels.empty() && panels.front().map.has_value(); }
};

/// An axis: from where to where, and its ticks at round numbers.
class Scale {
 public:
  /// For values from `least` to `greatest` with about `wantedTicks` ticks. `margin` is the part of the range
  /// that is left free at both ends; with `isCount` the ticks are whole numbers.
  Scale(double least, double greatest, int wantedTicks, double margin, bool isCount = false);

  /// 0 for the beginning of the axis, 1 for its end.
  double Position(double value) const { return (value - from_) / (to_ - from_); }

  bool Holds(double value) const { return from_ <= value && value <= to_; }
  double From() const noexcept { return from_; }
  double To() const noexcept { return to_; }
  const std::vector<double>& Ticks() const noexcept { return ticks_; }

  /// The text of a tick, without the power of ten that Unit names.
  std::string TickText(double tick) const;

  /// The axis' label with the power of ten that its numbers are to be multiplied by, if any: "Load (×10⁶)".
  std::string Label(const std::string& label) const;

 private:
  double from_;
  double to_;
  int exponent_ = 0;
  int decimals_ = 0;
  std::vector<double> ticks_;
};

/// The three scales of a figure, the same for all its panels.
struct FigureScales {
  Scale x;
  Scale y;
  Scale value;
};

FigureScales ScalesOf(const Figure& figure, int wantedXTicks, int wantedYTicks);

}  // namespace vorquill21::tool
