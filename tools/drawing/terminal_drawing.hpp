#pragma once

#include <string>

#include "drawing/chart.hpp"

namespace vorquill21::tool {

/// The figure as text, panels below each other, each `columns` wide and `lines` high with its axes. Series
/// are lines of Braille dots, named by a letter where they end; maps are fields of four densities.
std::string TextOf(const Figure& figure, int columns, int lines, bool inColour);

}  // namespace vorquill21::tool
