#pragma once

#include "vorquill21/export.hpp"
#include "vorquill21/frame/types/text.hpp"

namespace vorquill21 {

/// What the library asks about the process that it runs in.
class VORQUILL21_API Process {
 public:
  virtual ~Process() = default;

  /// The arguments of the process as one text, without the program's own name; an argument that holds a blank
  /// stands between double quotes.
  virtual Text CommandLine() const = 0;

  /// Seconds since the last local midnight, with fractions.
  virtual double SecondsSinceMidnight() const = 0;

  /// The folder that holds the library file (the program for a static build), or the one that the environment
  /// variable VORQUILL21_LIBRARY_FOLDER names in its place; without a final separator.
  virtual Text LibraryFolder() const = 0;
};

}  // namespace vorquill21
