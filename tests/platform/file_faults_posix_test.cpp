#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/platform/faulty_calls_posix.hpp"
#include "tests/platform/system_posix.hpp"
#include "tests/support/raised_number.hpp"
#include "tests/support/temporary_folder.hpp"
#include "vorquill21/platform/error_posix.hpp"
#include "vorquill21/platform/files_posix.hpp"

namespace vorquill21 {
namespace {

using test::ContentOf;
using test::FaultyCalls;
using test::NamesIn;
using test::RaisedNumber;
using test::WriteContent;

const std::string kOld = "the old content, which is longer than the new one";
const std::string kNew = "the new content";

/// A folder to work in and the way to its files.
class Workplace {
 public:
  std::string Folder() const { return folder_.Path().string(); }
  std::string At(const std::string& name) const { return Folder() + '/' + name; }
  Text Below(const std::string& name) const { return FromUtf8(At(name)); }

  std::string ContentOrMissing(const std::string& name) const {
    return std::filesystem::exists(At(name)) ? ContentOf(At(name)) : kMissing;
  }

  static inline const std::string kMissing = "(missing)";

 private:
  test::TemporaryFolder folder_;
};

/// One operation on files in a certain state.
struct Scenario {
  const char* name;
  std::function<void(const Workplace&)> prepare;
  std::function<void(Files&, const Workplace&)> operate;
  std::function<std::string(const Workplace&)> state;  // what the operation changes, as one text
  std::string before;
  std::string after;
  std::vector<std::string> names;  // that may be in the folder at any time
  bool inPlace = false;            // a failure may leave a mixture of both contents
};

std::string Content(const Workplace& place) {
  return place.ContentOrMissing("a");
}

std::string ContentOfTarget(const Workplace& place) {
  return place.ContentOrMissing("folder/target");
}

std::string NameList(const Workplace& place) {
  std::string list;
  for (const std::string& name : NamesIn(place.Folder())) list += name + ' ';
  return list;
}

std::string Nothing(const Workplace&) {
  return {};
}

void Replace(Files& files, const Workplace& place) {
  files.Replace(place.Below("a"), kNew);
}

void Append(Files& files, const Workplace& place) {
  files.Append(place.Below("a"), kNew);
}

void MakeOldFile(const Workplace& place) {
  WriteContent(place.At("a"), kOld);
}

void MakeLink(const Workplace& place) {
  std::filesystem::create_directory(place.At("folder"));
  std::filesystem::create_symlink("folder/target", place.At("a"));
}

void MakeLinkToOldFile(const Workplace& place) {
  MakeLink(place);
  WriteContent(place.At("folder/target"), kOld);
}

void MakeFileOfTwoNames(const Workplace& place) {
  MakeOldFile(place);
  std::filesystem::create_hard_link(place.At("a"), place.At("b"));
}

void MakeTwoFiles(const Workplace& place) {
  MakeOldFile(place);
  WriteContent(place.At("b"), kOld);
}

std::vector<Scenario> Scenarios() {
  const std::string missing = Workplace::kMissing;
  return {
      {"Replace a missing file", [](auto&) {}, Replace, Content, missing, kNew, {"a"}},
      {"Replace", MakeOldFile, Replace, Content, kOld, kNew, {"a"}},
      {"Replace through a link", MakeLinkToOldFile, Replace, ContentOfTarget, kOld, kNew, {"a", "folder"}},
      {"Replace through a link to nothing",
       MakeLink,
       Replace,
       ContentOfTarget,
       missing,
       kNew,
       {"a", "folder"}},
      {"Replace in place", MakeFileOfTwoNames, Replace, Content, kOld, kNew, {"a", "b"}, true},
      {"Append to a missing file", [](auto&) {}, Append, Content, missing, kNew, {"a"}},
      {"Append", MakeOldFile, Append, Content, kOld, kOld + kNew, {"a"}},
      {"Append through a link to nothing", MakeLink, Append, ContentOfTarget, missing, kNew, {"a", "folder"}},
      {"Delete",
       MakeOldFile,
       [](Files& files, auto& place) { files.Delete(place.Below("a")); },
       Content,
       kOld,
       missing,
       {"a"}},
      {"Make a folder",
       [](auto&) {},
       [](Files& files, auto& place) { files.MakeFolder(place.Below("new")); },
       NameList,
       "",
       "new ",
       {"new"}},
      {"Remove a folder",
       [](auto& place) { std::filesystem::create_directory(place.At("old")); },
       [](Files& files, auto& place) { files.RemoveFolder(place.Below("old")); },
       NameList,
       "old ",
       "",
       {"old"}},
      {"Read",
       MakeOldFile,
       [](Files& files, auto& place) { EXPECT_EQ(ReadWholeFile(files, place.Below("a")), kOld); },
       Nothing,
       "",
       "",
       {"a"}},
      {"Read the end",
       MakeOldFile,
       [](Files& files, auto& place) {
         const auto reader = files.OpenForReading(place.Below("a"));
         reader->Skip(1);
         EXPECT_EQ(ReadRest(*reader, 0), kOld.substr(1));
       },
       Nothing,
       "",
       "",
       {"a"}},
      {"List by wildcard",
       MakeTwoFiles,
       [](Files& files, auto& place) { EXPECT_EQ(files.List(place.Below("*")).size(), 2u); },
       Nothing,
       "",
       "",
       {"a", "b"}},
      {"List a link to nothing",
       MakeLink,
       [](Files& files, auto& place) { EXPECT_EQ(files.List(place.Below("a")).size(), 1u); },
       Nothing,
       "",
       "",
       {"a", "folder"}},
  };
}

/// What the operation did when it met a fault, or was to meet one.
struct Outcome {
  std::string met;
  std::int32_t number = 0;
};

/// Runs the operation of a scenario with one fault and checks what must hold in any case.
Outcome RunWithFault(const Scenario& scenario, FaultyCalls calls) {
  const Workplace place;
  scenario.prepare(place);
  const std::size_t descriptors = test::OpenDescriptors();
  PosixFiles files(calls);
  const Outcome outcome{{}, RaisedNumber([&] { scenario.operate(files, place); })};

  EXPECT_EQ(test::OpenDescriptors(), descriptors);
  for (const std::string& name : NamesIn(place.Folder())) {
    EXPECT_NE(std::ranges::find(scenario.names, name), scenario.names.end()) << name;
  }
  const std::string state = scenario.state(place);
  const bool isWhole = state == scenario.before || state == scenario.after;
  EXPECT_TRUE(isWhole || (scenario.inPlace && outcome.number != 0)) << state;
  EXPECT_TRUE(outcome.number != 0 || state == scenario.after) << state;
  return {calls.Met(), outcome.number};
}

/// Runs the operation of a scenario with a fault in the 1st, 2nd, ... call until none is met.
std::vector<Outcome> RunWithEachFault(const Scenario& scenario, FaultyCalls::Fault fault, int code) {
  std::vector<Outcome> outcomes;
  for (int at = 1;; ++at) {
    SCOPED_TRACE(std::string(scenario.name) + ", fault " + std::to_string(at) + ", code " +
                 std::to_string(code));
    const Outcome outcome = RunWithFault(scenario, FaultyCalls(fault, at, code));
    if (outcome.met.empty()) {
      EXPECT_EQ(outcome.number, 0);
      return outcomes;
    }
    outcomes.push_back(outcome);
  }
}

/// The calls whose failure harms nobody: they are made for the best only, or on what was read alone.
bool MayFailInSilence(const Scenario& scenario, const std::string& met) {
  const std::string_view name = scenario.name;
  if (met.starts_with("SetOwner") || met.starts_with("Reserve") || met.starts_with("CloseListing"))
    return true;
  if (name.starts_with("Read")) return met.starts_with("Close") || met.starts_with("Move");
  // The file is closed first, and what else was open is closed after it.
  return name.starts_with("Replace") && met.starts_with("Close") && met != "Close 1";
}

TEST(FileFaultsTest, AFailureOfTheDeviceInAnyCallIsError57) {
  std::size_t faults = 0;
  for (const Scenario& scenario : Scenarios()) {
    const auto outcomes = RunWithEachFault(scenario, FaultyCalls::kFailure, EIO);
    EXPECT_FALSE(outcomes.empty()) << scenario.name;
    for (const Outcome& outcome : outcomes) {
      const bool silent = MayFailInSilence(scenario, outcome.met);
      EXPECT_EQ(outcome.number, silent ? 0 : kDeviceInputOutput) << scenario.name << ": " << outcome.met;
    }
    faults += outcomes.size();
  }
  EXPECT_GT(faults, 80u);
}

TEST(FileFaultsTest, EveryCodeInAnyCallIsItsNumberOrHarmless) {
  for (const int code : {ENOSPC, EDQUOT, EMFILE, ENFILE, ENOMEM, EFBIG}) {
    for (const Scenario& scenario : Scenarios()) {
      for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kFailure, code)) {
        const bool noRoom = RuntimeErrorOf(code, Subject::kFile) == kDiskFull;
        const bool isReservation = outcome.met.starts_with("Reserve");
        const bool silent = MayFailInSilence(scenario, outcome.met) && !(isReservation && noRoom);
        EXPECT_EQ(outcome.number, silent ? 0 : RuntimeErrorOf(code, Subject::kFile))
            << scenario.name << ": " << outcome.met << ", code " << code;
      }
    }
  }
}

TEST(FileFaultsTest, ARefusalInAnyCallIsAPermissionErrorOrGoesAnotherWay) {
  for (const int code : {EACCES, EPERM, EROFS}) {
    for (const Scenario& scenario : Scenarios()) {
      for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kFailure, code)) {
        const bool expected =
            outcome.number == 0 || outcome.number == kPermissionDenied || outcome.number == kPathFileAccess;
        EXPECT_TRUE(expected) << scenario.name << ": " << outcome.met << " gives " << outcome.number;
      }
    }
  }
}

TEST(FileFaultsTest, AMissingNameInAnyCallIsANumberOfItsOwn) {
  for (const int code : {ENOENT, ENOTDIR}) {
    for (const Scenario& scenario : Scenarios()) {
      // What has gone meanwhile is no find of a listing.
      if (std::string_view(scenario.name).starts_with("List")) continue;
      for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kFailure, code)) {
        // A link that seems to be none, and then is one, is refused in one way or another.
        const bool expected = outcome.number == 0 || outcome.number == kFileNotFound ||
                              outcome.number == kPathNotFound || outcome.met.starts_with("ReadLink");
        EXPECT_TRUE(expected) << scenario.name << ": " << outcome.met << " gives " << outcome.number;
      }
    }
  }
}

TEST(FileFaultsTest, AnInterruptedCallIsMadeAgain) {
  std::size_t faults = 0;
  for (const Scenario& scenario : Scenarios()) {
    for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kInterruption, EINTR)) {
      EXPECT_EQ(outcome.number, 0) << scenario.name << ": " << outcome.met;
      ++faults;
    }
  }
  EXPECT_GT(faults, 30u);
}

TEST(FileFaultsTest, AShortReadOrReplacingWriteGoesOn) {
  std::size_t faults = 0;
  for (const Scenario& scenario : Scenarios()) {
    if (std::string_view(scenario.name).starts_with("Append")) continue;
    for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kShortCount, 0)) {
      EXPECT_EQ(outcome.number, 0) << scenario.name << ": " << outcome.met;
      ++faults;
    }
  }
  EXPECT_GE(faults, 6u);
}

TEST(FileFaultsTest, AShortAppendIsCutBackAndReported) {
  std::size_t faults = 0;
  for (const Scenario& scenario : Scenarios()) {
    if (!std::string_view(scenario.name).starts_with("Append")) continue;
    for (const Outcome& outcome : RunWithEachFault(scenario, FaultyCalls::kShortCount, 0)) {
      EXPECT_EQ(outcome.number, kDiskFull) << scenario.name << ": " << outcome.met;
      ++faults;
    }
  }
  EXPECT_EQ(faults, 3u);
}

TEST(FileFaultsTest, AFailureWhileWritingInPlaceLeavesTheOldLength) {
  class BreakingCalls : public FileCalls {
   public:
    ssize_t Write(int file, const char* bytes, std::size_t size) override {
      if (++writes_ == 1) return FileCalls::Write(file, bytes, size / 2);
      errno = EIO;
      return -1;
    }

   private:
    int writes_ = 0;
  };
  for (const std::string& content : {std::string("0123456789"), std::string(100, 'x')}) {
    const Workplace place;
    MakeFileOfTwoNames(place);
    BreakingCalls calls;
    PosixFiles files(calls);
    EXPECT_EQ(RaisedNumber([&] { files.Replace(place.Below("a"), content); }), kDeviceInputOutput);
    const std::size_t written = std::min(content.size() / 2, kOld.size());
    EXPECT_EQ(ContentOf(place.At("b")), content.substr(0, written) + kOld.substr(written));
  }
}

TEST(FileFaultsTest, AnErrorBeforeTheFirstByteInPlaceLeavesTheOldContent) {
  const Workplace place;
  MakeFileOfTwoNames(place);
  for (int at = 1;; ++at) {
    FaultyCalls calls(FaultyCalls::kFailure, at, ENOSPC);
    PosixFiles files(calls);
    const auto number = RaisedNumber([&] { Replace(files, place); });
    ASSERT_EQ(number, kDiskFull) << calls.Met();
    EXPECT_EQ(ContentOf(place.At("b")), kOld) << calls.Met();
    if (calls.Met() == "Write 1") return;
  }
}

/// Another process acts just before a call is made.
class BusySystem : public FileCalls {
 public:
  explicit BusySystem(std::function<void()> act) : act_(std::move(act)) {}

  int Status(int file, struct stat& status) override {
    ActOnce();
    return FileCalls::Status(file, status);
  }
  int Unlink(const char* path) override {
    ActOnce();
    return FileCalls::Unlink(path);
  }
  ssize_t Write(int file, const char* bytes, std::size_t size) override {
    if (!writesHalf) return FileCalls::Write(file, bytes, size);
    const ssize_t count = FileCalls::Write(file, bytes, size / 2);
    ActOnce();
    return count;
  }

  bool writesHalf = false;

 private:
  void ActOnce() {
    if (const auto act = std::exchange(act_, nullptr)) act();
  }

  std::function<void()> act_;
};

TEST(FileFaultsTest, AFileThatIsReplacedByAnotherMeanwhileIsReplacedAgain) {
  const Workplace place;
  MakeOldFile(place);
  BusySystem calls([&] {
    WriteContent(place.At("b"), "of the other");
    std::filesystem::rename(place.At("b"), place.At("a"));
  });
  PosixFiles files(calls);
  Replace(files, place);
  EXPECT_EQ(ContentOf(place.At("a")), kNew);
}

TEST(FileFaultsTest, AFileThatIsDeletedByAnotherMeanwhileIsDeletedAllTheSame) {
  const Workplace place;
  MakeTwoFiles(place);
  BusySystem calls([&] { std::filesystem::remove(place.At("a")); });
  PosixFiles files(calls);
  files.Delete(place.Below("*"));
  EXPECT_TRUE(NamesIn(place.Folder()).empty());
}

TEST(FileFaultsTest, WhatAnotherAppendsBehindAShortAppendIsNotCutOff) {
  const Workplace place;
  MakeOldFile(place);
  BusySystem calls([&] {
    FileCalls plainCalls;
    PosixFiles(plainCalls).Append(place.Below("a"), "of the other");
  });
  calls.writesHalf = true;
  PosixFiles files(calls);
  EXPECT_EQ(RaisedNumber([&] { Append(files, place); }), kDiskFull);
  EXPECT_TRUE(ContentOf(place.At("a")).ends_with("of the other"));
}

TEST(FileFaultsTest, AShortAppendToAPipeIsAFaultOfTheDevice) {
  const Workplace place;
  ASSERT_EQ(::mkfifo(place.At("a").c_str(), 0666), 0);
  const int reader = ::open(place.At("a").c_str(), O_RDONLY | O_NONBLOCK);
  BusySystem calls(nullptr);
  calls.writesHalf = true;
  PosixFiles files(calls);
  EXPECT_EQ(RaisedNumber([&] { files.Append(place.Below("a"), "0123456789"); }), kDeviceInputOutput);
  char received[16] = {};
  EXPECT_EQ(::read(reader, received, sizeof received), 5);
  EXPECT_STREQ(received, "01234");
  ::close(reader);
}

/// Remembers the calls that bring bytes and names onto the disk, in their order.
class RecordingCalls : public FileCalls {
 public:
  ssize_t Write(int file, const char* bytes, std::size_t size) override {
    Note("write", file);
    return FileCalls::Write(file, bytes, size);
  }
  int SetLength(int file, off_t length) override {
    Note("set the length of", file);
    return FileCalls::SetLength(file, length);
  }
  int Reserve(int file, off_t length) override {
    Note("have room for", file);
    return FileCalls::Reserve(file, length);
  }
  int SetMode(int file, mode_t mode) override {
    Note("set the mode of", file);
    return FileCalls::SetMode(file, mode);
  }
  int Sync(int file) override {
    Note("sync", file);
    return FileCalls::Sync(file);
  }
  int Close(int file) override {
    Note("close", file);
    return FileCalls::Close(file);
  }
  int Rename(const char* from, const char* to) override {
    notes += "rename; ";
    return FileCalls::Rename(from, to);
  }

  std::string notes;

 private:
  void Note(const std::string& call, int file) {
    struct stat status {};
    FileCalls::Status(file, status);
    const char* subject = S_ISDIR(status.st_mode) ? " folder; "
                          : status.st_size > 0    ? " content; "
                                                  : " empty; ";
    notes += call + subject;
  }
};

TEST(FileFaultsTest, NewContentIsOnTheDiskBeforeItTakesItsPlaceAndItsNameAfterwards) {
  const Workplace place;
  RecordingCalls calls;
  PosixFiles files(calls);
  Replace(files, place);
  const std::string storing = "write empty; sync content; close content; rename; sync folder; close folder; ";
  EXPECT_EQ(calls.notes, storing);

  calls.notes.clear();
  Replace(files, place);
  EXPECT_EQ(calls.notes, "set the mode of empty; " + storing + "close content; ")
      << "the old file is closed last";
}

TEST(FileFaultsTest, NobodyElseMayReadNewContentBeforeItHasTheModeOfTheOld) {
  class ModesOfNewFiles : public FileCalls {
   public:
    int Open(const char* path, int flags, mode_t mode) override {
      if ((flags & O_CREAT) != 0) modes.push_back(mode);
      return FileCalls::Open(path, flags, mode);
    }
    std::vector<mode_t> modes;
  };
  const Workplace place;
  ModesOfNewFiles calls;
  PosixFiles files(calls);
  Replace(files, place);
  Replace(files, place);
  EXPECT_EQ(calls.modes, (std::vector<mode_t>{0666, 0600}));
}

TEST(FileFaultsTest, WhatIsWrittenInPlaceIsOnTheDiskBeforeItIsClosed) {
  const Workplace place;
  MakeFileOfTwoNames(place);
  RecordingCalls calls;
  PosixFiles files(calls);
  Replace(files, place);
  EXPECT_EQ(calls.notes,
            "have room for content; write content; set the length of content; sync content; close content; ");
}

TEST(FileFaultsTest, AWriteThatTakesNothingIsAFaultOfTheDevice) {
  class FullCalls : public FileCalls {
   public:
    ssize_t Write(int, const char*, std::size_t) override { return 0; }
  };
  const Workplace place;
  MakeOldFile(place);
  FullCalls calls;
  PosixFiles files(calls);
  EXPECT_EQ(RaisedNumber([&] { Replace(files, place); }), kDeviceInputOutput);
  EXPECT_EQ(Content(place), kOld);
  EXPECT_EQ(NameList(place), "a ");
}

TEST(FileFaultsTest, AFolderThatCannotBeSyncedIsNoFault) {
  class FolderWithoutSync : public FileCalls {
   public:
    int Sync(int file) override {
      struct stat status {};
      FileCalls::Status(file, status);
      if (!S_ISDIR(status.st_mode)) return FileCalls::Sync(file);
      ++refused;
      errno = EINVAL;
      return -1;
    }
    int refused = 0;
  };
  const Workplace place;
  MakeOldFile(place);
  FolderWithoutSync calls;
  PosixFiles files(calls);
  Replace(files, place);
  EXPECT_EQ(calls.refused, 1);
  EXPECT_EQ(Content(place), kNew);
}

TEST(FileFaultsTest, AFolderInWhichEveryNameOfATemporaryFileIsTakenIsError75) {
  class CrowdedFolder : public FileCalls {
   public:
    int Open(const char* path, int flags, mode_t mode) override {
      if ((flags & O_EXCL) == 0) return FileCalls::Open(path, flags, mode);
      names.insert(path);
      errno = EEXIST;
      return -1;
    }
    std::set<std::string> names;
  };
  const Workplace place;
  MakeOldFile(place);
  CrowdedFolder calls;
  PosixFiles files(calls);
  EXPECT_EQ(RaisedNumber([&] { Replace(files, place); }), kPathFileAccess);
  EXPECT_EQ(calls.names.size(), 1000u);
  EXPECT_EQ(Content(place), kOld);
}

TEST(FileFaultsTest, AListingThatBreaksOffSaysSo) {
  const Workplace place;
  FileCalls calls;
  DIR* const listing = calls.OpenListing(place.Folder().c_str());
  const int unreadable = ::open("/dev/null", O_RDONLY);
  ASSERT_NE(::dup2(unreadable, ::dirfd(listing)), -1);
  ::close(unreadable);
  std::string name;
  EXPECT_EQ(calls.NextName(listing, name), -1);
  EXPECT_EQ(LastError(Subject::kFolder), kPathNotFound);
  EXPECT_EQ(calls.CloseListing(listing), 0);
}

TEST(FileFaultsTest, AnAppendOpensTheFileWritesOnceAndCloses) {
  class NotingCalls : public FileCalls {
   public:
    int Open(const char* path, int flags, mode_t mode) override {
      const int file = FileCalls::Open(path, flags, mode);
      if (file != -1) noted += "open ";
      return file;
    }
    ssize_t Write(int file, const char* bytes, std::size_t size) override {
      noted += "write ";
      return FileCalls::Write(file, bytes, size);
    }
    int Close(int file) override {
      noted += "close ";
      return FileCalls::Close(file);
    }
    std::string noted;
  };
  const Workplace place;
  NotingCalls calls;
  PosixFiles files(calls);
  for (const std::size_t length : {std::size_t{5'000'000}, std::size_t{7}}) {
    files.Append(place.Below("a"), std::string(length, 'x'));
    EXPECT_EQ(calls.noted, "open write close ");
    calls.noted.clear();
  }
}

TEST(ErrorTest, EachCodeOfTheSystemHasItsNumber) {
  struct Case {
    int code;
    std::int32_t ofFile;
    std::int32_t ofFolder;
  };
  const Case cases[] = {
      {EINVAL, 52, 52},  {ENAMETOOLONG, 52, 52}, {ELOOP, 52, 52},  {EILSEQ, 52, 52}, {ENOENT, 53, 76},
      {ENOTDIR, 76, 76}, {EACCES, 70, 75},       {EPERM, 70, 75},  {EROFS, 70, 75},  {EISDIR, 70, 75},
      {EBUSY, 70, 75},   {ETXTBSY, 70, 75},      {EXDEV, 70, 75},  {EEXIST, 75, 75}, {ENOTEMPTY, 75, 75},
      {EMLINK, 75, 75},  {ENOSPC, 61, 61},       {EDQUOT, 61, 61}, {EFBIG, 61, 61},  {EMFILE, 67, 67},
      {ENFILE, 67, 67},  {ENOMEM, 7, 7},         {ENOBUFS, 7, 7},  {EIO, 57, 57},    {ENXIO, 57, 57},
      {0, 57, 57},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(RuntimeErrorOf(each.code, Subject::kFile), each.ofFile) << each.code;
    EXPECT_EQ(RuntimeErrorOf(each.code, Subject::kFolder), each.ofFolder) << each.code;
  }
}

}  // namespace
}  // namespace vorquill21
