#include "columns/column_source.hpp"

#include <algorithm>
#include <array>

namespace vorquill21::tool {
namespace {

constexpr std::size_t kHeadLength = std::size_t{1} << 18;

std::string ReadHead(ByteReader& reader) {
  std::string head(kHeadLength, '\0');
  std::size_t filled = 0;
  while (filled < head.size()) {
    const std::size_t count = reader.Read(std::span(head).subspan(filled));
    if (count == 0) break;
    filled += count;
  }
  head.resize(filled);
  return head;
}

}  // namespace

/// The importer's view of the source.
class SourceReader : public ByteReader {
 public:
  explicit SourceReader(ColumnSource& source) : source_(source) {}

  std::uint64_t Length() const override { return source_.reader_->Length(); }
  std::size_t Read(std::span<char> buffer) override { return source_.Read(buffer); }

 private:
  ColumnSource& source_;
};

ColumnSource::ColumnSource(Session& session, const std::string& path) : ForwardingFiles(session.GetFiles()) {
  try {
    reader_ = session.GetFiles().OpenForReading(FromUtf8(path));
    head_ = ReadHead(*reader_);
  } catch (const LibraryError& error) {
    throw CannotRead(path, error);
  }
}

void ColumnSource::ReadRest() {
  std::array<char, 1 << 16> buffer;
  while (Read(buffer) != 0) {
  }
}

std::unique_ptr<ByteReader> ColumnSource::OpenForReading(TextView) {
  return std::make_unique<SourceReader>(*this);
}

std::size_t ColumnSource::Read(std::span<char> buffer) {
  std::size_t count = std::min(buffer.size(), head_.size() - headPassed_);
  if (count > 0) {
    std::copy_n(head_.begin() + static_cast<std::ptrdiff_t>(headPassed_), count, buffer.begin());
    headPassed_ += count;
  } else {
    count = reader_->Read(buffer);
  }
  if (observer_) observer_({buffer.data(), count});
  return count;
}

}  // namespace vorquill21::tool
