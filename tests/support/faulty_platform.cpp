#include "tests/support/faulty_platform.hpp"

namespace vorquill21::test {

class FaultyFiles::Reader : public ByteReader {
 public:
  Reader(std::unique_ptr<ByteReader> base, FaultPlan& plan) : base_(std::move(base)), plan_(plan) {}

  std::uint64_t Length() const override { return base_->Length(); }

  std::size_t Read(std::span<char> buffer) override {
    plan_.Count();
    return base_->Read(buffer);
  }

  void Skip(std::uint64_t count) override {
    plan_.Count();
    base_->Skip(count);
  }

 private:
  std::unique_ptr<ByteReader> base_;
  FaultPlan& plan_;
};

std::vector<DirectoryEntry> FaultyFiles::List(TextView pattern) {
  plan_.Count();
  return base_.List(pattern);
}

bool FaultyFiles::FolderExists(TextView path) {
  plan_.Count();
  return base_.FolderExists(path);
}

std::unique_ptr<ByteReader> FaultyFiles::OpenForReading(TextView path) {
  plan_.Count();
  return std::make_unique<Reader>(base_.OpenForReading(path), plan_);
}

void FaultyFiles::Replace(TextView path, std::string_view bytes) {
  plan_.Count();
  base_.Replace(path, bytes);
}

void FaultyFiles::Append(TextView path, std::string_view bytes) {
  plan_.Count();
  base_.Append(path, bytes);
}

void FaultyFiles::Delete(TextView pattern) {
  plan_.Count();
  base_.Delete(pattern);
}

void FaultyFiles::MakeFolder(TextView path) {
  plan_.Count();
  base_.MakeFolder(path);
}

void FaultyFiles::RemoveFolder(TextView path) {
  plan_.Count();
  base_.RemoveFolder(path);
}

void FaultySettings::Set(TextView application, TextView section, TextView key, TextView value) {
  plan_.Count();
  base_.Set(application, section, key, value);
}

}  // namespace vorquill21::test
