#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/faulty_platform.hpp"
#include "tests/support/memory_failures.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

using test::FaultPlan;
using test::ForEachFault;

constexpr TextView kPath = u"/library/columns.txt";
constexpr TextView kFailure = u"CImportColumnData.ImportData: An error occurred while importing data";
constexpr RuntimeErrorNumber kEveryNumber[] = {
    kInvalidProcedureCall, kOutOfMemory,  kBadFileName,      kFileNotFound,   kDeviceInputOutput, kDiskFull,
    kInputPastEnd,         kTooManyFiles, kPermissionDenied, kPathFileAccess, kPathNotFound};

/// Two columns of as many rows as make several blocks.
std::string LongContent() {
  std::string content = "a,b\n";
  for (int row = 0; row < 30000; ++row) content += std::to_string(row) + ",-1.25\n";
  return content;
}

void Prepare(CImportColumnData& import) {
  import.Filepath(kPath);
  import.Delimiter(u",");
  import.HeaderRow(1);
  import.FirstValueRow(2);
}

void ExpectColumnsOfLastSuccess(const CImportColumnData& import) {
  EXPECT_EQ(import.DataRowCount(), 1);
  EXPECT_EQ(import.ColumnData(0, 0), Variant(7.0));
  EXPECT_THROW(import.ColumnData(1, 0), LibraryError);
}

TEST(ImportFaultsTest, EveryFaultFailsTheImportAndKeepsTheLastColumns) {
  const std::string content = LongContent();
  for (const RuntimeErrorNumber number : kEveryNumber) {
    const int faults = ForEachFault(number, [&](FaultPlan& plan) {
      test::FakePlatform fake;
      FaultPlan noFaults;
      test::FaultyPlatform faulty(fake.platform, plan);
      CImportColumnData import(faulty.platform);
      Prepare(import);

      // The plan counts from the second import on.
      const FaultPlan planned = std::exchange(plan, noFaults);
      fake.files.Replace(kPath, "old\n7\n");
      EXPECT_TRUE(import.Import());
      plan = planned;

      fake.files.Replace(kPath, content);
      Text status = u"before";
      const bool succeeded = import.Import(&status);
      EXPECT_EQ(succeeded, !plan.Hit());
      EXPECT_EQ(import.LastImportSuccessful(), succeeded);
      EXPECT_EQ(status, succeeded ? TextView(u"before") : kFailure);
      EXPECT_EQ(fake.files.OpenReaders(), 0);
      EXPECT_TRUE(fake.desktop.messages.empty());
      if (succeeded) {
        EXPECT_EQ(import.DataRowCount(), 30000);
      } else {
        ExpectColumnsOfLastSuccess(import);
      }
    });
    EXPECT_GE(faults, 5);  // the opening, several blocks, and the end
  }
}

/// Files whose readers run out of memory, or fail in any other way, at their second block.
template <typename Error>
class FailingFiles : public test::MemoryFiles {
 public:
  std::unique_ptr<ByteReader> OpenForReading(TextView path) override {
    return std::make_unique<Reader>(test::MemoryFiles::OpenForReading(path));
  }

 private:
  class Reader : public ByteReader {
   public:
    explicit Reader(std::unique_ptr<ByteReader> base) : base_(std::move(base)) {}
    std::uint64_t Length() const override { return base_->Length(); }
    std::size_t Read(std::span<char> buffer) override {
      if (++reads_ == 2) throw Error();
      return base_->Read(buffer);
    }

   private:
    std::unique_ptr<ByteReader> base_;
    int reads_ = 0;
  };
};

template <typename Error>
class ImportMemoryFaultsTest : public ::testing::Test {};
TYPED_TEST_SUITE(ImportMemoryFaultsTest, test::MemoryFailures);

TYPED_TEST(ImportMemoryFaultsTest, RunningOutOfMemoryFailsTheImport) {
  test::FakePlatform fake;
  FailingFiles<TypeParam> files;
  files.MakeFolder(u"/library");
  files.Replace(kPath, LongContent());
  Platform platform = fake.With(files);
  CImportColumnData import(platform);
  Prepare(import);
  Text status;
  EXPECT_FALSE(import.Import(&status));
  EXPECT_EQ(status, kFailure);
  EXPECT_EQ(files.OpenReaders(), 0);
  EXPECT_EQ(import.ColumnCount(), 2);
}

TEST(ImportFaultsTest, AFaultWhileSettingsAreWrittenIsRaisedAndLeavesTheOnesBeforeStored) {
  for (const RuntimeErrorNumber number : kEveryNumber) {
    int run = 0;
    const int faults = ForEachFault(number, [&](FaultPlan& plan) {
      test::FakePlatform fake;
      test::FaultyPlatform faulty(fake.platform, plan);
      CImportColumnData import(faulty.platform);
      import.HeaderRow(3);
      import.FirstValueRow(4);
      import.Delimiter(u";");
      const std::int32_t raised = test::RaisedNumber([&] { import.SettingsWriteToRegistry(); });
      const auto stored = [&](TextView key) {
        return fake.settings.Get(u"Vorquill21", u"Import Settings", key, u"absent");
      };
      ++run;
      EXPECT_EQ(raised, plan.Hit() ? number : 0);
      EXPECT_EQ(stored(u"HeaderRow"), run > 1 ? u"3" : u"absent");
      EXPECT_EQ(stored(u"FirstValueRow"), run > 2 ? u"4" : u"absent");
      EXPECT_EQ(stored(u"Delimiter"), run > 3 ? u";" : u"absent");
      EXPECT_TRUE(fake.desktop.messages.empty());
    });
    EXPECT_EQ(faults, 3);
  }
}

}  // namespace
}  // namespace vorquill21
