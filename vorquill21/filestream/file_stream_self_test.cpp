#include <algorithm>
#include <utility>
#include <vector>

#include "vorquill21/files/guarded.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/frame/types/number_text.hpp"

namespace vorquill21 {
namespace {

BoundedArray<Variant> ArrayOf(std::vector<Variant> elements) {
  return BoundedArray<Variant>(std::move(elements));
}

BoundedArray<Variant> NoVersions() {
  return BoundedArray<Variant>::Empty();
}

/// Path of a file in the self-test folder, which is made when it is missing.
Text InTestFolder(Platform& platform, TextView name) {
  const Text folder = platform.GetProcess().LibraryFolder().append(u"\\self test");
  CFile(platform).DirMake(folder);
  return Text(folder).append(u"\\").append(name);
}

/// A file of the self-test folder, which is gone when the check is over.
class ScratchFile {
 public:
  ScratchFile(Platform& platform, TextView name)
      : files_(platform.GetFiles()), path_(InTestFolder(platform, name)) {}
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    Succeeds([this] { files_.Delete(path_); });
  }

  const Text& Path() const { return path_; }

 private:
  Files& files_;
  Text path_;
};

void DeleteIfPresent(Platform& platform, TextView path) {
  if (CFile(platform).FileExists(path)) platform.GetFiles().Delete(path);
}

bool WritesAndReadsFieldsAndTables(Platform& platform) {
  const ScratchFile file(platform, u"filestream.tst");
  BoundedArray<double> table({0, 1}, {0, 2});
  std::ranges::copy(std::vector{1.0, 0.5, 2.0, 3.0, 0.0, 4.25}, table.Elements().begin());

  CFileStream written(platform);
  written.Initialise(u"none", NoVersions());
  written.AddField(u"DESCRIPTION1", u"description1");
  written.AddField(u"DESCRIPTION2", u"description2");
  const bool tableAdded = written.AddTable2d(u"TABLE FIELD", table);
  written.FileWrite(file.Path());

  CFileStream read(platform);
  return tableAdded && read.FileRead(file.Path()) &&
         read.GetFieldString(u"DESCRIPTION1") == Variant(u"description1") &&
         read.GetFieldString(u"DESCRIPTION2") == Variant(u"description2") &&
         read.GetTable2d(u"TABLE FIELD") == Variant(table);
}

bool WritesAndReadsVersion(Platform& platform, TextView version) {
  const ScratchFile file(platform, u"filestream.tst");
  const BoundedArray<Variant> items = ArrayOf({u"item1", u"item2", u"item3", u"item4"});

  CFileStream written(platform);
  written.Initialise(version, NoVersions());
  written.AddField(u"text", u"1.2");
  written.AddField(u"number", 1.2);
  written.AddField(u"animal", u"elephant");
  written.AddField(u"items", items);
  written.AddField(u"letter", u"q");
  written.FileWrite(file.Path());

  CFileStream read(platform);
  return read.FileRead(file.Path()) && read.FileVersion() == version &&
         read.GetFieldString(u"text") == Variant(u"1.2") && read.GetFieldNumber(u"number") == Variant(1.2) &&
         read.GetFieldString(u"animal") == Variant(u"elephant") &&
         read.GetFieldString(u"items") == Variant(items) && read.GetFieldString(u"letter") == Variant(u"q");
}

bool WritesAndReadsVersions(Platform& platform) {
  return WritesAndReadsVersion(platform, u"VERSION 1") && WritesAndReadsVersion(platform, u"VERSION 2");
}

bool ReadsNumbersOfAnotherSeparator(Platform& platform) {
  DeleteIfPresent(platform, InTestFolder(platform, u"ITSeparators.tst"));
  CFileStream stream(platform);
  stream.Initialise(u"", NoVersions());
  stream.RemoveField(u"DEC SEP");
  stream.AddField(u"DEC SEP", u",");
  stream.AddField(u"ONE", u"12345,6");
  stream.AddField(u"TWO", u"0,123");
  stream.AddField(u"THREE", u"1");
  return stream.GetFieldNumber(u"ONE") == Variant(12345.6) &&
         stream.GetFieldNumber(u"TWO") == Variant(0.123) && stream.GetFieldNumber(u"THREE") == Variant(1.0);
}

bool ReadsSeveralNumbers(Platform& platform) {
  const char16_t separator = platform.GetLocale().DecimalSeparator();
  const Text numbers = NumberToText(1.1, separator) + u'\t' + NumberToText(1.2, separator) + u'\t' +
                       NumberToText(1.3, separator);
  CFileStream stream(platform);
  stream.Initialise(u"", NoVersions());
  stream.AddField(u"item4", numbers);
  const Variant read = stream.GetFieldNumber(u"item4", ArrayOf({1, 2, 3, 4}));
  stream.Initialise(u"", NoVersions());
  return read == Variant(ArrayOf({1.1, 1.2, 1.3, 4.0})) && stream.GetFieldNumber(u"item4") == Variant(0.0);
}

bool FillsGapsFromDefaults(Platform& platform) {
  const BoundedArray<Variant> defaults = ArrayOf({u"AA", u"BB", u"CC", u"DD"});
  struct Round {
    TextView fieldText;
    Variant expected;
  };
  const Round rounds[] = {
      {u"a\tb\t1.2", ArrayOf({u"a", u"b", u"1.2", u"DD"})},
      {u"a\t\t1.2", ArrayOf({u"a", u"BB", u"1.2", u"DD"})},
      {u"a\tb\tc\td\te", ArrayOf({u"a", u"b", u"c", u"d", u"e"})},
      {u"a", u"a"},
      {u"", defaults},
  };
  CFileStream stream(platform);
  stream.Initialise(u"", NoVersions());
  const bool itemsFit = std::ranges::all_of(rounds, [&](const Round& round) {
    stream.AddField(u"item4", round.fieldText);
    return stream.GetFieldString(u"item4", defaults) == round.expected;
  });
  stream.AddField(u"list", ArrayOf({u"1", u"", u"3"}));
  const Variant list = stream.GetFieldString(u"list", ArrayOf({u"A", u"B", u"C"}));
  return itemsFit && list == Variant(ArrayOf({u"1", u"B", u"3"}));
}

bool AcceptsCompatibleVersions(Platform& platform) {
  const BoundedArray<Variant> compatible = ArrayOf({u"v1.1", u"v1.2", u"v1.3"});
  const ScratchFile file(platform, u"IsCompatVer.tst");
  CFileStream written(platform);
  written.Initialise(u"v2", compatible);
  written.FileWrite(file.Path());
  CFileStream read(platform);
  read.Initialise(u"v2", compatible);
  if (!read.FileRead(file.Path()) || !read.IsCompatibleVersion(true)) return false;

  struct Row {
    TextView version;
    bool isAccepted;
  };
  constexpr Row kRows[] = {{u"v1.1", true}, {u"v1.2", true}, {u"v1.3", true},
                           {u"v2", true},   {u"", false},    {u"v1", false}};
  return std::ranges::all_of(kRows, [&](const Row& row) {
    read.AddField(u"FILEVERSION", row.version);
    return read.IsCompatibleVersion(true) == row.isAccepted &&
           read.IsCompatibleVersion(true, row.version, u"v2", u"v1.1 v1.2 v1.3") == row.isAccepted;
  });
}

/// Whether a text is the reference but for the user's decimal separator in the place of the reference's
/// point.
bool IsInUsersNotation(TextView text, TextView reference, char16_t separator) {
  return std::ranges::equal(text, reference, [separator](char16_t unit, char16_t expected) {
    return unit == expected || (unit == separator && expected == u'.');
  });
}

bool CopiesTyreData(Platform& platform) {
  constexpr TextView kVersion = u"TYRE DATA 2.1";
  constexpr TextView kCounts[] = {u"SLIP ANGLE DATA COUNT", u"VERTICAL FORCE DATA COUNT",
                                  u"CAMBER DATA COUNT"};
  constexpr TextView kForces = u"LATERAL FORCE DATA";
  constexpr TextView kFactors = u"SHAPE FACTOR DATA";

  CFileStream reference(platform);
  Text referenceText;
  if (!reference.FileRead(InTestFolder(platform, u"3d ref.txt"), &referenceText)) return false;
  std::vector<std::int32_t> counts;
  for (const TextView name : kCounts) counts.push_back(ToInt32(reference.GetFieldNumber(name), u'.'));

  CFileStream copy(platform);
  copy.Initialise(kVersion, NoVersions());
  const bool factorsAdded = copy.AddTable2d(kFactors, reference.GetTable2d(kFactors));
  for (std::size_t i = 0; i < counts.size(); ++i) copy.AddField(kCounts[i], counts[i]);
  const bool forcesAdded =
      copy.AddTable3d(kForces, reference.GetTable3d(kForces, counts[0] - 1, counts[1] - 1, counts[2]));
  const Text path = InTestFolder(platform, u"3d try.txt");
  copy.FileWrite(path);

  CFileStream written(platform);
  Text writtenText;
  return factorsAdded && forcesAdded && reference.FileVersion() == kVersion &&
         written.FileRead(path, &writtenText) &&
         IsInUsersNotation(writtenText, referenceText, platform.GetLocale().DecimalSeparator());
}

struct Check {
  TextView nameOnFailure;
  bool (*passes)(Platform&);
};

constexpr Check kChecks[] = {
    {u"SelfTest_Main", WritesAndReadsFieldsAndTables},
    {u"SelfTest_ReadWrite", WritesAndReadsVersions},
    {u"SelfTest_DecSeparators", ReadsNumbersOfAnotherSeparator},
    {u"SelfTest_GetFieldNumberMultiple", ReadsSeveralNumbers},
    {u"SelfTest_GetFieldStringMultiple", FillsGapsFromDefaults},
    {u"SelfTest_IsCompatibleVersion", AcceptsCompatibleVersions},
    {u"SelfTest_3dTable", CopiesTyreData},
};

}  // namespace

void CFileStream::SelfTest_Main(FailedTests& aoFailedTests) const {
  for (const Check& check : kChecks) {
    const bool passed = ResultOr(false, [&] { return check.passes(platform_); });
    if (!passed) aoFailedTests.emplace_back(check.nameOnFailure);
  }
}

}  // namespace vorquill21
