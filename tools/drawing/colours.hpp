#pragma once

#include <array>
#include <cstddef>

namespace vorquill21::tool {

struct Colour {
  double red;
  double green;
  double blue;
};

/// Colours of series, told apart by people who see no red or green, too. They repeat after the last one.
inline Colour SeriesColour(std::size_t index) {
  constexpr std::array<Colour, 8> kColours{{{0.00, 0.45, 0.70},
                                            {0.84, 0.37, 0.00},
                                            {0.00, 0.62, 0.45},
                                            {0.80, 0.47, 0.65},
                                            {0.34, 0.71, 0.91},
                                            {0.90, 0.62, 0.00},
                                            {0.30, 0.30, 0.30},
                                            {0.55, 0.34, 0.29}}};
  return kColours[index % kColours.size()];
}

/// The colour of a value of a map, from 0 (dark blue) to 1 (yellow); its brightness rises evenly.
inline Colour MapColour(double position) {
  constexpr std::array<Colour, 6> kStops{{{0.27, 0.00, 0.33},
                                          {0.25, 0.27, 0.53},
                                          {0.16, 0.47, 0.56},
                                          {0.13, 0.66, 0.52},
                                          {0.48, 0.82, 0.32},
                                          {0.99, 0.91, 0.14}}};
  const double scaled = position * (kStops.size() - 1);
  const auto stop = static_cast<std::size_t>(scaled < 0 ? 0 : scaled > 4 ? 4 : scaled);
  const double part = scaled - static_cast<double>(stop);
  const Colour& from = kStops[stop];
  const Colour& to = kStops[stop + 1];
  return {from.red + part * (to.red - from.red), from.green + part * (to.green - from.green),
          from.blue + part * (to.blue - from.blue)};
}

}  // namespace vorquill21::tool
