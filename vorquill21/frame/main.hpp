#pragma once

#include <memory>

#include "vorquill21/export.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"
#include "vorquill21/filestream/file_stream.hpp"
#include "vorquill21/frame/types/bounded_array.hpp"
#include "vorquill21/frame/types/variant.hpp"
#include "vorquill21/interpolate/interpolate.hpp"
#include "vorquill21/log/log.hpp"
#include "vorquill21/numeric/geometry.hpp"
#include "vorquill21/numeric/math_utils.hpp"
#include "vorquill21/numeric/statistics.hpp"
#include "vorquill21/numeric/trigonometry.hpp"
#include "vorquill21/platform/platform.hpp"
#include "vorquill21/text/string.hpp"

namespace vorquill21 {

/// The door to the library: makes one object of each class, hands them out, and runs the self-tests.
///
/// Every call of an accessor gives the same object, so that state set through one of them (a log that was
/// initialised, a document that was read) is seen through all. The objects live as long as somebody refers to
/// them, after the end of Main, too. A host that needs a second log or document makes its own, and so it does
/// with CImportColumnData, which has no accessor.
class VORQUILL21_API Main {
 public:
  /// Makes the ten objects with `platform`.
  explicit Main(Platform& platform = Platform::Native());
  Main(const Main&) = delete;
  Main& operator=(const Main&) = delete;

  std::shared_ptr<CFile> LibFile() const noexcept { return file_; }
  std::shared_ptr<CGeometry> LibGeometry() const noexcept { return geometry_; }
  std::shared_ptr<CInterpolate> LibInterpolate() const noexcept { return interpolate_; }
  std::shared_ptr<CMathUtils> LibMathUtils() const noexcept { return mathUtils_; }
  std::shared_ptr<CStatistics> LibStatistics() const noexcept { return statistics_; }
  std::shared_ptr<CTrigonometry> LibTrigonometry() const noexcept { return trigonometry_; }

  /// Runs the self-tests when the first element of `avParamArray` asks for it. Always returns empty.
  ///
  /// | first element | what happens                                                               |
  /// |---------------|----------------------------------------------------------------------------|
  /// | 1             | the self-tests run; the only sign of a failure is a beep                   |
  /// | 2             | the self-tests run, and a message box tells what came of them              |
  /// | any other     | nothing, and neither for an array without elements or a missing argument   |
  ///
  /// The message box says "All self tests passed" (information, the library's title), or "Failed the
  /// following tests:" and the names of the checks that failed, each line ended by a CR (exclamation mark,
  /// the title "Self Tests in Kestrovan").
  ///
  /// The first element counts as a number: empty and False are 0, a text must be one. Otherwise, and for an
  /// object or an array, error 13; an array that was never dimensioned is error 9. Further elements are
  /// ignored.
  ///
  /// The self-tests use objects of their own, and files in the folder "self test" under the platform's
  /// library folder. Of these stays "3d try.txt", a copy of "3d ref.txt", which an installation puts there.
  /// Where that folder cannot be written, the checks that need it are among those that failed. A host that
  /// runs there names another one by the environment variable VORQUILL21_LIBRARY_FOLDER, or makes its Main
  /// with a platform whose Process has another LibraryFolder, and puts "3d ref.txt" into the folder "self
  /// test" under it. One error is not a name in the list but raised: that of deleting the log file of the
  /// self-tests when it was written.
  Variant Initialise(const BoundedArray<Variant>& avParamArray) const;

  std::shared_ptr<CString> LibString() const noexcept { return string_; }
  std::shared_ptr<CLog> LibLog() const noexcept { return log_; }
  std::shared_ptr<CFileStream> LibFilestream() const noexcept { return filestream_; }
  std::shared_ptr<COSUtils> LibOSUtils() const noexcept { return osUtils_; }

 private:
  bool RunSelfTests(bool abShowResult) const;

  Platform& platform_;
  std::shared_ptr<CFile> file_;
  std::shared_ptr<CFileStream> filestream_;
  std::shared_ptr<CGeometry> geometry_;
  std::shared_ptr<CInterpolate> interpolate_;
  std::shared_ptr<CLog> log_;
  std::shared_ptr<CMathUtils> mathUtils_;
  std::shared_ptr<COSUtils> osUtils_;
  std::shared_ptr<CStatistics> statistics_;
  std::shared_ptr<CString> string_;
  std::shared_ptr<CTrigonometry> trigonometry_;
};

}  // namespace vorquill21
