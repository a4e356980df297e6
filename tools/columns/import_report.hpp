#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "columns/fields.hpp"
#include "columns/layout.hpp"
#include "columns/line_splitter.hpp"
#include "output/result.hpp"

namespace vorquill21::tool {

/// Follows the bytes that an import reads and tells what became of them. It holds one line and some numbers,
/// however long the file is.
class ImportReport {
 public:
  /// `delimiter` in the bytes of the code page.
  ImportReport(std::string delimiter, const Layout& layout, std::int32_t maxColumns);

  void Add(std::string_view bytes) {
    splitter_.Add(bytes, [this](std::string_view line) { TakeLine(line); });
  }
  void Finish() {
    splitter_.Finish([this](std::string_view line) { TakeLine(line); });
  }

  /// The values and findings of the report.
  void Describe(Result& result) const;

  /// Why nothing was imported, when the file itself tells.
  std::string ReasonOfFailure() const;

 private:
  /// How often something was seen, and the first few times.
  struct Sightings {
    std::int64_t count = 0;
    std::vector<Finding> first;

    void Add(Finding finding);
  };

  void TakeLine(std::string_view line);
  void TakeHeader(std::string_view line);
  void TakeValues(std::string_view line);
  void TakeValue(std::string_view field, std::size_t column);
  void Stop(std::string reason, std::size_t fields);

  std::string delimiter_;
  Layout layout_;
  std::size_t maxColumns_;
  LineSplitter splitter_;
  std::int64_t line_ = 0;
  std::vector<std::string> headers_;
  std::vector<std::string> ignoredHeaders_;
  bool hasStopped_ = false;
  std::int64_t stoppedLine_ = 0;
  std::string stoppedReason_;
  std::size_t stoppedFields_ = 0;
  std::int64_t unreadLines_ = 0;
  std::int64_t tooLargeLine_ = 0;
  Sightings shifted_;
  Sightings zeros_;
  Sightings partial_;
};

}  // namespace vorquill21::tool
