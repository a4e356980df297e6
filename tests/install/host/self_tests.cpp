// Runs the self-tests, which report in a message box; where there is no display, on standard error.

#include <vector>
#include <vorquill21/vorquill21.hpp>

int main() {
  const std::vector<vorquill21::Variant> runAndReport{2};
  vorquill21::Main().Initialise(vorquill21::BoundedArray<vorquill21::Variant>(runAndReport));
}
