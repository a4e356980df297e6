#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/fake_platform.hpp"
#include "tests/support/for_each_shortage.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

using test::MemoryShortage;

constexpr TextView kPath = u"/library/a file whose name needs memory.txt";
constexpr TextView kOtherPath = u"/library/some other file, whose name needs more memory.txt";
constexpr TextView kDelimiter = u" a delimiter that needs memory ";

/// A step that is short of memory; true when it did all of its work.
using Step = bool (*)(CImportColumnData& import);

bool Imports(CImportColumnData& import) {
  Text status;
  const bool isImported = import.Import(&status);
  EXPECT_EQ(isImported, import.LastImportSuccessful());
  return isImported;
}

const std::vector<std::pair<std::string, Step>> kSteps = {
    {"Import", Imports},
    {"ColumnData",
     [](CImportColumnData& import) {
       return import.ColumnData(0, -1).If<BoundedArray<Variant>>()->UpperBound() == 1;
     }},
    {"ColumnHeaderData",
     [](CImportColumnData& import) {
       return *import.ColumnHeaderData(1).If<Text>() == u"a header that needs memory";
     }},
    {"Delimiter",
     [](CImportColumnData& import) {
       import.Delimiter(kDelimiter);
       return import.Delimiter() == kDelimiter;
     }},
    {"Filepath",
     [](CImportColumnData& import) {
       import.Filepath(kOtherPath);
       return import.Filepath() == kOtherPath;
     }},
    {"SettingsReadFromRegistry",
     [](CImportColumnData& import) {
       import.SettingsReadFromRegistry();
       return import.HeaderRow() == 9;
     }},
    {"SettingsWriteToRegistry",
     [](CImportColumnData& import) {
       import.SettingsWriteToRegistry();
       return true;
     }},
};

/// Two rows of two columns that were imported.
struct Setting {
  Setting() {
    fake.files.Replace(kPath, "x\ta header that needs memory\n1\t2\n3\t4\n");
    import.Filepath(kPath);
    import.Delimiter(u"\t");
    import.HeaderRow(1);
    import.FirstValueRow(2);
    EXPECT_TRUE(import.Import());
  }

  test::FakePlatform fake;
  CImportColumnData import{fake.platform};
};

class ImportMemoryTest : public ::testing::TestWithParam<std::pair<std::string, Step>> {};
INSTANTIATE_TEST_SUITE_P(Every, ImportMemoryTest, ::testing::ValuesIn(kSteps),
                         [](const auto& test) { return test.param.first; });

TEST_P(ImportMemoryTest, AShortageIsErrorSevenOrAnImportThatFailed) {
  test::ForEachShortage([&](MemoryShortage& shortage) {
    Setting setting;
    bool isDone = false;
    const std::int32_t number = shortage.RaisedDuring([&] { isDone = GetParam().second(setting.import); });
    EXPECT_TRUE(number == 0 || number == kOutOfMemory) << number;
    EXPECT_TRUE(isDone || shortage.Hit());
    EXPECT_EQ(setting.fake.files.OpenReaders(), 0);
    EXPECT_EQ(setting.import.DataRowCount(), 2);
    EXPECT_EQ(setting.import.ColumnData(1, 1), Variant(4.0));
  });
}

}  // namespace
}  // namespace vorquill21
