#include <filesystem>
#include <fstream>
#include <random>

#include "other/commands.hpp"
#include "other/samples.hpp"

namespace vorquill21::tool {
namespace {

/// A folder that is gone when this object is.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    do {
      path_ = std::filesystem::temp_directory_path() / ("vorquill21-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

/// The process as it is, but with the self-tests' folder elsewhere.
class ScratchProcess : public Process {
 public:
  explicit ScratchProcess(const std::filesystem::path& folder) : folder_(FromUtf8(folder.string())) {}

  Text CommandLine() const override { return Native().CommandLine(); }
  double SecondsSinceMidnight() const override { return Native().SecondsSinceMidnight(); }
  Text LibraryFolder() const override { return folder_; }

 private:
  static Process& Native() { return Platform::Native().GetProcess(); }

  Text folder_;
};

struct SelftestCommand {
  void Declare(CLI::App&) {}

  ExitCode Run(Session& session, Result& result) const {
    const std::string message = MessageOfTests(session);
    const std::vector<std::string> failed = FailedNames(message);
    result.Add("passed", "", failed.empty());
    result.AddText((failed.empty() ? message : "Failed the following tests:") + "\n");
    result.AddLines("failed", failed);
    return failed.empty() ? ExitCode::kGood : ExitCode::kFindings;
  }

 private:
  static std::string MessageOfTests(Session& session) {
    constexpr std::int32_t kRunAndReport = 2;
    try {
      const ScratchFolder scratch;
      std::filesystem::create_directory(scratch.Path() / "self test");
      const std::string_view reference = Samples().front().bytes;
      std::ofstream(scratch.Path() / "self test" / "3d ref.txt", std::ios::binary) << reference;
      ScratchProcess process(scratch.Path());
      Platform& native = Platform::Native();
      Platform platform(native.GetFiles(), session.GetDesktop(), native.GetLocale(), process,
                        native.GetSettings());
      Main(platform).Initialise(BoundedArray<Variant>(std::vector<Variant>{kRunAndReport}));
    } catch (const std::filesystem::filesystem_error& error) {
      throw Failure(ExitCode::kInputOutput,
                    "cannot make a folder for the self-tests: " + error.code().message());
    }
    return session.GetDesktop().LastMessage("the self-tests did not run");
  }

  /// The message is "All self tests passed", or a line of its own before the names, each ended by a CR.
  static std::vector<std::string> FailedNames(const std::string& message) {
    if (message == "All self tests passed") return {};
    std::vector<std::string> names;
    std::istringstream lines(message);
    for (std::string line; std::getline(lines, line, '\r');) names.push_back(line);
    if (names.size() > 1) names.erase(names.begin());
    return names;
  }
};

}  // namespace

void AddSelftest(CLI::App& app, Work& chosen) {
  AddCommand<SelftestCommand>(app, chosen, "selftest", "Run the library's self-tests", "selftest");
}

}  // namespace vorquill21::tool
