#include <gtest/gtest.h>
#include <windows.h>

#include <functional>

#include "tests/platform/file_folder_windows.hpp"
#include "tests/support/raised_number.hpp"
#include "vorquill21/platform/error_windows.hpp"
#include "vorquill21/platform/files_windows.hpp"

namespace vorquill21 {
namespace {

/// The system's calls, one of which fails, and a count of what is open.
class FaultyCalls : public FileCalls {
 public:
  /// The call number `call` from now on (1 is the next) fails with `code`.
  void FailAt(int call, DWORD code) {
    countdown_ = call;
    code_ = code;
  }
  bool Hit() const { return hit_; }
  int StillOpen() const { return open_; }

  /// Writes that are to transfer only half of their bytes, and then fail or, with code 0, succeed.
  bool halvesWrites = false;

  NativeHandle Open(const std::wstring& path, Opening opening) override {
    return Fails() ? nullptr : Counted(FileCalls::Open(path, opening));
  }
  NativeHandle Make(const std::wstring& path, std::uint32_t attributes) override {
    return Fails() ? nullptr : Counted(FileCalls::Make(path, attributes));
  }
  bool Close(NativeHandle file) override {
    --open_;
    const bool fails = Fails();
    FileCalls::Close(file);
    if (fails) SetLastError(code_);
    return !fails;
  }
  std::optional<FileTraits> Traits(NativeHandle file) override {
    return Fails() ? std::nullopt : FileCalls::Traits(file);
  }
  std::optional<std::wstring> FinalPath(NativeHandle file) override {
    return Fails() ? std::nullopt : FileCalls::FinalPath(file);
  }
  bool CopyPermissions(NativeHandle from, NativeHandle to) override {
    return !Fails() && FileCalls::CopyPermissions(from, to);
  }
  bool Read(NativeHandle file, char* buffer, std::uint32_t size, std::uint32_t& count) override {
    return !Fails() && FileCalls::Read(file, buffer, size, count);
  }
  bool Move(NativeHandle file, std::int64_t distance) override {
    return !Fails() && FileCalls::Move(file, distance);
  }
  bool Write(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) override {
    if (!Fails()) return FileCalls::Write(file, bytes, size, count);
    if (!halvesWrites) return false;
    FileCalls::Write(file, bytes, size / 2, count);
    return Failed();
  }
  bool WriteAtEnd(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) override {
    if (!Fails()) return FileCalls::WriteAtEnd(file, bytes, size, count);
    if (!halvesWrites) return false;
    FileCalls::WriteAtEnd(file, bytes, size / 2, count);
    return Failed();
  }
  bool SetLength(NativeHandle file, std::uint64_t length) override {
    return !Fails() && FileCalls::SetLength(file, length);
  }
  bool Flush(NativeHandle file) override { return !Fails() && FileCalls::Flush(file); }
  bool IsThere(const std::wstring& path) override { return !Fails() && FileCalls::IsThere(path); }
  bool Rename(const std::wstring& from, const std::wstring& to) override {
    return !Fails() && FileCalls::Rename(from, to);
  }
  bool Delete(const std::wstring& path) override { return !Fails() && FileCalls::Delete(path); }
  bool MakeFolder(const std::wstring& path) override { return !Fails() && FileCalls::MakeFolder(path); }
  bool RemoveFolder(const std::wstring& path) override { return !Fails() && FileCalls::RemoveFolder(path); }
  NativeHandle FindFirst(const std::wstring& pattern, FoundName& found) override {
    return Fails() ? nullptr : Counted(FileCalls::FindFirst(pattern, found));
  }
  bool FindNext(NativeHandle listing, FoundName& found) override {
    return !Fails() && FileCalls::FindNext(listing, found);
  }
  void FindClose(NativeHandle listing) override {
    --open_;
    FileCalls::FindClose(listing);
  }

 private:
  bool Fails() {
    if (countdown_ == 0 || --countdown_ > 0) return false;
    hit_ = true;
    SetLastError(code_);
    return true;
  }

  /// The answer of a call that did half of its work.
  bool Failed() {
    SetLastError(code_);
    return code_ == ERROR_SUCCESS;
  }

  NativeHandle Counted(NativeHandle handle) {
    if (handle != nullptr) ++open_;
    return handle;
  }

  int countdown_ = 0;  // 0: no fault planned
  DWORD code_ = ERROR_SUCCESS;
  bool hit_ = false;
  int open_ = 0;
};

constexpr DWORD kCodes[] = {ERROR_DISK_FULL, ERROR_ACCESS_DENIED, ERROR_TOO_MANY_OPEN_FILES, ERROR_IO_DEVICE};

/// What one run with a fault left behind.
struct Outcome {
  std::int32_t number = 0;  // of the error raised, 0 for none
  bool hit = false;
  int stillOpen = 0;
};

template <typename Operation>
Outcome RunWithFault(int call, DWORD code, bool halvesWrites, Operation operation) {
  Outcome outcome;
  FaultyCalls calls;
  calls.halvesWrites = halvesWrites;
  calls.FailAt(call, code);
  WindowsFiles files(calls);
  outcome.number = test::RaisedNumber([&] { operation(files); });
  outcome.hit = calls.Hit();
  outcome.stillOpen = calls.StillOpen();
  return outcome;
}

/// Makes every call of `operation` fail in turn, with every code, each time in a fresh folder that `arrange`
/// fills. Checks that nothing stays open and that a failure has its number; `check(folder, outcome)` looks at
/// the rest. The last run of each code meets no fault. Returns the number of faults met.
template <typename Arrange, typename Operation, typename Check>
int ForEveryFault(Subject subject, Arrange arrange, Operation operation, Check check) {
  int faults = 0;
  for (const DWORD code : kCodes) {
    bool hit = true;
    for (int call = 1; hit; ++call) {
      SCOPED_TRACE("call " + std::to_string(call) + " fails with " + std::to_string(code));
      const test::FileFolder folder;
      arrange(folder);
      const Outcome outcome =
          RunWithFault(call, code, false, [&](WindowsFiles& files) { operation(files, folder); });
      EXPECT_EQ(outcome.stillOpen, 0);
      EXPECT_TRUE(outcome.number == 0 || outcome.number == RuntimeErrorOf(code, subject)) << outcome.number;
      EXPECT_TRUE(outcome.hit || outcome.number == 0);
      check(folder, outcome);
      hit = outcome.hit;
      faults += hit ? 1 : 0;
    }
  }
  return faults;
}

constexpr std::string_view kOld = "old content";
constexpr std::string_view kNew = "new content, which is longer";

void ReplaceFile(WindowsFiles& files, const test::FileFolder& folder) {
  files.Replace(folder.Below(u"a.txt"), kNew);
}

TEST(WindowsFileFaultsTest, ReplacingLeavesTheOldContentOrTheNewAndNothingElse) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); }, ReplaceFile,
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(folder.Names(), std::vector<Text>{u"a.txt"});
        EXPECT_EQ(folder.Bytes(u"a.txt"), outcome.number == 0 ? kNew : kOld);
      });
  // Open, traits, final path, make, permissions, close, write, flush, close, rename.
  EXPECT_EQ(faults, 10 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, MakingAFileLeavesItWholeOrNotAtAll) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder&) {}, ReplaceFile,
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(folder.Names(), outcome.number == 0 ? std::vector<Text>{u"a.txt"} : std::vector<Text>());
        EXPECT_EQ(folder.Bytes(u"a.txt"), outcome.number == 0 ? kNew : "");
      });
  // Open, look for a link, make, write, flush, close, rename.
  EXPECT_EQ(faults, 7 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, WritingInPlaceNeverReportsSuccessForAWriteThatFailed) {
  const int faults = ForEveryFault(
      Subject::kFile,
      [](const test::FileFolder& folder) {
        folder.Write(u"a.txt", kOld);
        CreateHardLinkW(folder.WideBelow(u"b.txt").c_str(), folder.WideBelow(u"a.txt").c_str(), nullptr);
      },
      ReplaceFile,
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(folder.Names(), (std::vector<Text>{u"a.txt", u"b.txt"}));
        const std::string bytes = folder.Bytes(u"a.txt");
        if (outcome.number == 0) {
          EXPECT_EQ(bytes, kNew);
        } else {
          EXPECT_TRUE(bytes == kOld || bytes == kNew) << bytes;
        }
      });
  // Open, traits, close; open, traits, room, write, cut, flush, close.
  EXPECT_EQ(faults, 10 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, AppendingLeavesTheFileAsItWasOrWithAllBytes) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); },
      [](WindowsFiles& files, const test::FileFolder& folder) { files.Append(folder.Below(u"a.txt"), kNew); },
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(folder.Names(), std::vector<Text>{u"a.txt"});
        const std::string all = std::string(kOld) + std::string(kNew);
        const std::string bytes = folder.Bytes(u"a.txt");
        if (outcome.number == 0) {
          EXPECT_EQ(bytes, all);
        } else {
          EXPECT_TRUE(bytes == kOld || bytes == all) << bytes;
        }
      });
  // Open, traits, write, close.
  EXPECT_EQ(faults, 4 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, AppendingToAMissingFileMakesItWithAllBytesOrNotAtAll) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder&) {},
      [](WindowsFiles& files, const test::FileFolder& folder) { files.Append(folder.Below(u"a.txt"), kNew); },
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(folder.Names(), outcome.number == 0 ? std::vector<Text>{u"a.txt"} : std::vector<Text>());
        EXPECT_EQ(folder.Bytes(u"a.txt"), outcome.number == 0 ? kNew : "");
      });
  // Open, look for a link, make, traits, write, close.
  EXPECT_EQ(faults, 6 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, AHalfAppendedLineIsCutOffAgain) {
  for (const DWORD code : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_DISK_FULL}, DWORD{ERROR_IO_DEVICE}}) {
    const test::FileFolder folder;
    folder.Write(u"a.txt", kOld);
    constexpr int kWriteCall = 3;
    const Outcome outcome = RunWithFault(
        kWriteCall, code, true, [&](WindowsFiles& files) { files.Append(folder.Below(u"a.txt"), kNew); });
    EXPECT_TRUE(outcome.hit);
    EXPECT_EQ(outcome.number, code == ERROR_DISK_FULL ? kDiskFull : kDeviceInputOutput);
    EXPECT_EQ(outcome.stillOpen, 0);
    EXPECT_EQ(folder.Bytes(u"a.txt"), kOld);
  }
}

TEST(WindowsFileFaultsTest, AShortWriteOfAReplacementGoesOnOrLeavesTheOldContent) {
  constexpr int kWriteCall = 7;
  for (const DWORD code : {DWORD{ERROR_SUCCESS}, DWORD{ERROR_DISK_FULL}}) {
    const test::FileFolder folder;
    folder.Write(u"a.txt", kOld);
    const Outcome outcome =
        RunWithFault(kWriteCall, code, true, [&](WindowsFiles& files) { ReplaceFile(files, folder); });
    EXPECT_TRUE(outcome.hit);
    EXPECT_EQ(outcome.number, code == ERROR_SUCCESS ? 0 : kDiskFull);
    EXPECT_EQ(outcome.stillOpen, 0);
    EXPECT_EQ(folder.Bytes(u"a.txt"), code == ERROR_SUCCESS ? kNew : kOld);
    EXPECT_EQ(folder.Names(), std::vector<Text>{u"a.txt"});
  }
}

TEST(WindowsFileFaultsTest, ReadingRaisesAndClosesAgain) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); },
      [](WindowsFiles& files, const test::FileFolder& folder) {
        EXPECT_EQ(ReadWholeFile(files, folder.Below(u"a.txt")), kOld);
      },
      [](const test::FileFolder& folder, const Outcome&) { EXPECT_EQ(folder.Bytes(u"a.txt"), kOld); });
  // Open, traits, two reads, and close, whose failure nobody hears of.
  EXPECT_EQ(faults, 5 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, ReadingTheEndOfAFileRaisesAndClosesAgain) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); },
      [](WindowsFiles& files, const test::FileFolder& folder) {
        const auto reader = files.OpenForReading(folder.Below(u"a.txt"));
        reader->Skip(1);
        EXPECT_EQ(ReadRest(*reader, kOld.size()), kOld.substr(1));
      },
      [](const test::FileFolder& folder, const Outcome&) { EXPECT_EQ(folder.Bytes(u"a.txt"), kOld); });
  // Open, traits, the move, two reads, and close.
  EXPECT_GE(faults, 6 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, ListingRaisesAndClosesAgain) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); },
      [](WindowsFiles& files, const test::FileFolder& folder) {
        EXPECT_EQ(files.List(folder.Below(u"*.txt")).size(), 1u);
      },
      [](const test::FileFolder&, const Outcome& outcome) { EXPECT_EQ(outcome.hit, outcome.number != 0); });
  // The first find, and the end.
  EXPECT_EQ(faults, 2 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, DeletingRaisesWhatWentWrong) {
  const int faults = ForEveryFault(
      Subject::kFile, [](const test::FileFolder& folder) { folder.Write(u"a.txt", kOld); },
      [](WindowsFiles& files, const test::FileFolder& folder) { files.Delete(folder.Below(u"*.txt")); },
      [](const test::FileFolder& folder, const Outcome& outcome) {
        EXPECT_EQ(outcome.hit, outcome.number != 0);
        EXPECT_EQ(folder.Names().empty(), outcome.number == 0);
      });
  // The first find, the end, the deletion.
  EXPECT_EQ(faults, 3 * static_cast<int>(std::size(kCodes)));
}

TEST(WindowsFileFaultsTest, FoldersAreMadeAndRemovedOrAnErrorSaysWhyNot) {
  const int faults = ForEveryFault(
      Subject::kFolder, [](const test::FileFolder&) {},
      [](WindowsFiles& files, const test::FileFolder& folder) {
        files.MakeFolder(folder.Below(u"sub"));
        files.RemoveFolder(folder.Below(u"sub"));
      },
      [](const test::FileFolder&, const Outcome& outcome) { EXPECT_EQ(outcome.hit, outcome.number != 0); });
  EXPECT_EQ(faults, 2 * static_cast<int>(std::size(kCodes)));
}

/// Somebody else makes a file just before it is made.
class OvertakenCalls : public FileCalls {
 public:
  explicit OvertakenCalls(const test::FileFolder& folder) : folder_(folder) {}

  NativeHandle Open(const std::wstring& path, Opening opening) override {
    if (opening == Opening::kForWritingWhenMade) folder_.Write(u"a.txt", kOld);
    return FileCalls::Open(path, opening);
  }
  bool WriteAtEnd(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) override {
    if (!failsWrites) return FileCalls::WriteAtEnd(file, bytes, size, count);
    SetLastError(ERROR_DISK_FULL);
    return false;
  }

  bool failsWrites = false;

 private:
  const test::FileFolder& folder_;
};

TEST(WindowsFileFaultsTest, AFileThatSomebodyElseMakesMeanwhileIsAppendedToAndNeverRemoved) {
  for (const bool failsWrites : {false, true}) {
    const test::FileFolder folder;
    OvertakenCalls calls(folder);
    calls.failsWrites = failsWrites;
    WindowsFiles files(calls);
    EXPECT_EQ(test::RaisedNumber([&] { files.Append(folder.Below(u"a.txt"), kNew); }),
              failsWrites ? kDiskFull : 0);
    EXPECT_EQ(folder.Bytes(u"a.txt"), std::string(kOld) + std::string(failsWrites ? "" : kNew));
  }
}

/// Somebody else appends behind the half of the bytes that are written before the disk is full.
class InterleavedCalls : public FileCalls {
 public:
  explicit InterleavedCalls(const test::FileFolder& folder) : folder_(folder) {}

  bool WriteAtEnd(NativeHandle file, const char* bytes, std::uint32_t size, std::uint32_t& count) override {
    FileCalls::WriteAtEnd(file, bytes, size / 2, count);
    std::ofstream(folder_.Path() / u"a.txt", std::ios::binary | std::ios::app) << "of the other";
    SetLastError(ERROR_DISK_FULL);
    return false;
  }

 private:
  const test::FileFolder& folder_;
};

TEST(WindowsFileFaultsTest, WhatAnotherAppendsBehindAHalfAppendedLineIsNotCutOff) {
  const test::FileFolder folder;
  folder.Write(u"a.txt", kOld);
  InterleavedCalls calls(folder);
  EXPECT_THROW(WindowsFiles(calls).Append(folder.Below(u"a.txt"), kNew), LibraryError);
  EXPECT_EQ(folder.Bytes(u"a.txt"),
            std::string(kOld) + std::string(kNew.substr(0, kNew.size() / 2)) + "of the other");
}

/// A folder that takes no new file.
class NoNewFiles : public FileCalls {
 public:
  NativeHandle Make(const std::wstring&, std::uint32_t) override {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
  }
};

TEST(WindowsFileFaultsTest, AFileInAFolderThatTakesNoNewOnesIsWrittenInPlace) {
  const test::FileFolder folder;
  folder.Write(u"a.txt", kOld);
  NoNewFiles calls;
  WindowsFiles(calls).Replace(folder.Below(u"a.txt"), kNew);
  EXPECT_EQ(folder.Bytes(u"a.txt"), kNew);
}

/// The first names tried for a new file are taken.
class TakenNames : public FileCalls {
 public:
  NativeHandle Make(const std::wstring& path, std::uint32_t attributes) override {
    tried.push_back(path);
    if (tried.size() > 3) return FileCalls::Make(path, attributes);
    SetLastError(ERROR_FILE_EXISTS);
    return nullptr;
  }

  std::vector<std::wstring> tried;
};

TEST(WindowsFileFaultsTest, ATakenTemporaryNameIsLeftAlone) {
  const test::FileFolder folder;
  TakenNames calls;
  WindowsFiles(calls).Replace(folder.Below(u"a.txt"), kNew);
  EXPECT_EQ(folder.Bytes(u"a.txt"), kNew);
  ASSERT_EQ(calls.tried.size(), 4u);
  std::ranges::sort(calls.tried);
  EXPECT_EQ(std::ranges::adjacent_find(calls.tried), calls.tried.end());
}

}  // namespace
}  // namespace vorquill21
