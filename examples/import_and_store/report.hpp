#pragma once

#include "vorquill21/vorquill21.hpp"

namespace example {

/// A heading in the report.
void SayTitle(vorquill21::TextView title);

/// A line of the report; further lines of the text are set below it.
void Say(vorquill21::TextView text);

/// A number as the report shows it, whatever the user's notation.
vorquill21::Text Shown(double number);
vorquill21::Text Shown(std::int32_t number);

/// What the example has shown to hold, or not to hold.
class Expectations {
 public:
  /// Says so when something that must hold does not.
  void Expect(bool holds, vorquill21::TextView what);

  bool AllHold() const { return allHold_; }

 private:
  bool allHold_ = true;
};

}  // namespace example
