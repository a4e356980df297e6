#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21 {
namespace {

namespace fs = std::filesystem;

/// A file in the system's folder for temporary files, removed in the end.
class NativeFile {
 public:
  explicit NativeFile(const std::string& content) {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = fs::temp_directory_path() / ("vorquill21-import-" + std::to_string(now) + ".txt");
    std::ofstream(path_, std::ios::binary) << content;
  }
  ~NativeFile() { fs::remove(path_); }
  NativeFile(const NativeFile&) = delete;
  NativeFile& operator=(const NativeFile&) = delete;

  Text Path() const { return FromUtf8(path_.string()); }

 private:
  fs::path path_;
};

TEST(ImportNativeTest, ImportsAFileOfTheOperatingSystem) {
  std::string content = "row\thalf\r\n";
  for (int row = 0; row < 20000; ++row)
    content += std::to_string(row) + "\t" + std::to_string(row / 2.0) + "\r\n";
  const NativeFile file(content);
  CImportColumnData import;
  import.Filepath(file.Path());
  import.Delimiter(u"\t");
  import.HeaderRow(1);
  import.FirstValueRow(2);
  EXPECT_TRUE(import.Import());
  EXPECT_EQ(import.DataRowCount(), 20000);
  EXPECT_EQ(import.ColumnData(1, 19999), Variant(9999.5));

  import.OffsetColumnData(1, 0.5);
  EXPECT_EQ(import.ColumnData(1, 19999), Variant(9999.0));
}

TEST(ImportNativeTest, WhatIsNoFileOfTheOperatingSystemFailsAndKeepsTheColumns) {
  const NativeFile file("a,b\r\n1,2\r\n");
  CImportColumnData import;
  import.Filepath(file.Path());
  import.Delimiter(u",");
  import.HeaderRow(1);
  import.FirstValueRow(2);
  EXPECT_TRUE(import.Import());
  const Text folder = FromUtf8(fs::temp_directory_path().string());
  for (const Text& path : {file.Path() + u".missing", file.Path() + u"\\below", folder, folder + u"\\",
                           Text(), folder + u"\\*.*"}) {
    import.Filepath(path);
    Text status;
    EXPECT_FALSE(import.Import(&status)) << ToUtf8(path);
    EXPECT_EQ(status, u"CImportColumnData.ImportData: An error occurred while importing data");
    EXPECT_FALSE(import.LastImportSuccessful());
    EXPECT_EQ(import.ColumnData(1, 0), Variant(2.0));
  }
}

}  // namespace
}  // namespace vorquill21
