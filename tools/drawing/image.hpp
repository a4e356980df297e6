#pragma once

#include <string>

#include "drawing/chart.hpp"

namespace vorquill21::tool {

/// Size of an image, in pixels of 1/96 inch.
struct ImageSize {
  int width = 960;
  int height = 480;
};

/// The bytes of an SVG document or a PNG image of the figure. Both are drawn by the same strokes.
std::string SvgOf(const Figure& figure, ImageSize size);
std::string PngOf(const Figure& figure, ImageSize size);

}  // namespace vorquill21::tool
