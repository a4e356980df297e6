#pragma once

#include "tests/support/fake_platform.hpp"
#include "vorquill21/frame/types/library_error.hpp"

namespace vorquill21::test {

/// A fake platform whose library folder holds what an installation puts there.
struct InstalledLibrary : FakePlatform {
  InstalledLibrary() { Install(process.libraryFolder); }

  /// Puts the reference file of the self-tests below a folder, which is there.
  void Install(TextView folder) {
    constexpr TextView kReferenceFile = u"\\self test\\3d ref.txt";
    Platform& native = Platform::Native();
    const Text reference = native.GetProcess().LibraryFolder().append(kReferenceFile);
    files.MakeFolder(Text(folder).append(u"\\self test"));
    files.Replace(Text(folder).append(kReferenceFile), ReadWholeFile(native.GetFiles(), reference));
  }
};

/// Refuses whatever would change a file or a folder.
class ReadOnlyFiles : public MemoryFiles {
 public:
  void Replace(TextView, std::string_view) override { throw LibraryError(kPermissionDenied); }
  void Append(TextView, std::string_view) override { throw LibraryError(kPermissionDenied); }
  void Delete(TextView) override { throw LibraryError(kPermissionDenied); }
  void MakeFolder(TextView) override { throw LibraryError(kPathFileAccess); }
};

}  // namespace vorquill21::test
