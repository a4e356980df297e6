#pragma once

#include <functional>
#include <memory>
#include <string>

#include "program/session.hpp"

namespace vorquill21::tool {

/// A column file that is read once, from its beginning to its end, so that it may come from standard input.
/// What the importer reads passes by an observer.
class ColumnSource : public ForwardingFiles {
 public:
  using Observer = std::function<void(std::string_view)>;

  /// Opens the file and reads its beginning.
  ColumnSource(Session& session, const std::string& path);

  /// The beginning of the file, enough of it to see how it is laid out.
  const std::string& Head() const noexcept { return head_; }

  /// Shows the observer all that is read from now on.
  void Observe(Observer observer) { observer_ = std::move(observer); }

  /// Reads what is left, for the observer alone.
  void ReadRest();

  /// Whatever the path, it is this file.
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override;

 private:
  friend class SourceReader;
  std::size_t Read(std::span<char> buffer);

  std::unique_ptr<ByteReader> reader_;
  std::string head_;
  std::size_t headPassed_ = 0;
  Observer observer_;
};

}  // namespace vorquill21::tool
