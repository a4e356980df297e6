#include "drawing/chart.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <span>

namespace vorquill21::tool {
namespace {

/// The least and the greatest of the finite values that it is shown.
struct Extent {
  double least = std::numeric_limits<double>::infinity();
  double greatest = -std::numeric_limits<double>::infinity();

  void Include(std::span<const double> values) {
    for (const double value : values) {
      if (!std::isfinite(value)) continue;
      least = std::min(least, value);
      greatest = std::max(greatest, value);
    }
  }
};

/// The greatest of 1, 2, 2.5, 5 times a power of ten that gives at least the wanted number of steps.
double RoundStep(double range, int wantedTicks, int& decimals) {
  const double rough = range / wantedTicks;
  const int power = static_cast<int>(std::floor(std::log10(rough)));
  const double unit = std::pow(10.0, power);
  const double ratio = rough / unit;
  const double factor = ratio >= 5 ? 5 : ratio >= 2.5 ? 2.5 : ratio >= 2 ? 2 : 1;
  decimals = std::max(0, factor == 2.5 ? 1 - power : -power);
  return factor * unit;
}

/// The multiple of three that keeps tick texts short; 0 for numbers of an everyday size.
int ExponentFor(double greatestMagnitude) {
  constexpr double kLarge = 1e5;
  constexpr double kSmall = 1e-2;
  if (greatestMagnitude == 0 || (greatestMagnitude < kLarge && greatestMagnitude >= kSmall)) return 0;
  return 3 * static_cast<int>(std::floor(std::log10(greatestMagnitude) / 3));
}

std::string Superscript(int number) {
  constexpr std::array<const char*, 10> kDigits{"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
  std::string text = number < 0 ? "⁻" : "";
  for (const char digit : std::to_string(std::abs(number)))
    text += kDigits[static_cast<std::size_t>(digit - '0')];
  return text;
}

}  // namespace

std::vector<double> FieldEdges(const std::vector<double>& centres) {
  if (centres.size() < 2) return {centres.front() - 0.5, centres.front() + 0.5};
  std::vector<double> edges;
  for (std::size_t i = 0; i + 1 < centres.size(); ++i) edges.push_back((centres[i] + centres[i + 1]) / 2);
  edges.insert(edges.begin(), 2 * centres.front() - edges.front());
  edges.push_back(2 * centres.back() - edges.back());
  return edges;
}

Scale::Scale(double least, double greatest, int wantedTicks, double margin, bool isCount) {
  if (!(least <= greatest)) least = greatest = 0;
  if (least == greatest) {
    const double half = least == 0 ? 1 : std::abs(least) / 2;
    least -= half;
    greatest += half;
  }
  const double free = margin * (greatest - least);
  from_ = least - free;
  to_ = greatest + free;
  exponent_ = ExponentFor(std::max(std::abs(from_), std::abs(to_)));
  const double factor = std::pow(10.0, exponent_);
  double step = RoundStep((to_ - from_) / factor, wantedTicks, decimals_);
  if (isCount && decimals_ > 0) {
    step = std::max(1.0, std::floor(step));
    decimals_ = 0;
  }
  const double first = std::ceil(from_ / factor / step - 1e-9);
  for (int i = 0; (first + i) * step * factor <= to_ + 1e-9 * (to_ - from_); ++i)
    ticks_.push_back((first + i) * step * factor);
}

std::string Scale::TickText(double tick) const {
  std::array<char, 64> text{};
  const double shown = tick / std::pow(10.0, exponent_);
  const double half = std::pow(10.0, -decimals_) / 2;
  std::snprintf(text.data(), text.size(), "%.*f", decimals_, std::abs(shown) < half ? 0.0 : shown);
  return text.data();
}

std::string Scale::Label(const std::string& label) const {
  if (exponent_ == 0) return label;
  const std::string power = "×10" + Superscript(exponent_);
  return label.empty() ? power : label + " (" + power + ")";
}

FigureScales ScalesOf(const Figure& figure, int wantedXTicks, int wantedYTicks) {
  Extent x;
  Extent y;
  Extent values;
  for (const Panel& panel : figure.panels) {
    for (const Series& series : panel.series) {
      x.Include(series.x);
      y.Include(series.y);
    }
    if (!panel.map) continue;
    x.Include(FieldEdges(panel.map->x));
    y.Include(FieldEdges(panel.map->y));
    values.Include(panel.map->values);
  }
  const double margin = figure.HasMap() ? 0 : 0.03;
  return {Scale(x.least, x.greatest, wantedXTicks, margin, figure.hasCountsOnX),
          Scale(y.least, y.greatest, wantedYTicks, margin, figure.hasCountsOnY),
          Scale(values.least, values.greatest, wantedYTicks, 0)};
}

}  // namespace vorquill21::tool
