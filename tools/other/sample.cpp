#include <filesystem>

#include "other/commands.hpp"
#include "other/samples.hpp"

namespace vorquill21::tool {
namespace {

struct SampleCommand {
  std::string folder = ".";
  bool overwrites = false;

  void Declare(CLI::App& command) {
    command.add_option("FOLDER", folder, "Where to write them; it is made when it is missing")
        ->capture_default_str()
        ->type_name("");
    command.add_flag("--force", overwrites, "Replace files that are there");
  }

  ExitCode Run(Session& session, Result& result) const {
    RequireFree();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) throw Failure(ExitCode::kInputOutput, "cannot make " + folder + ": " + error.message());
    std::vector<Result::Row> rows;
    for (const Sample& sample : Samples()) {
      const std::string path = Path(sample);
      session.WriteFile(path, sample.bytes);
      rows.push_back({path, sample.description});
    }
    result.AddTable("files", {{"file", "FILE"}, {"description", "WHAT IT IS"}}, std::move(rows));
    return ExitCode::kGood;
  }

 private:
  std::string Path(const Sample& sample) const {
    return (std::filesystem::path(folder) / sample.name).lexically_normal().string();
  }

  void RequireFree() const {
    for (const Sample& sample : Samples()) {
      std::error_code error;  // what cannot be looked at will not be written, either
      if (!overwrites && std::filesystem::exists(Path(sample), error)) {
        throw Failure(ExitCode::kRefused, Path(sample) + " is there already; --force replaces it");
      }
    }
  }
};

}  // namespace

void AddSample(CLI::App& app, Work& chosen) {
  AddCommand<SampleCommand>(app, chosen, "sample", "Write the sample files that the examples work on",
                            "sample samples --force");
}

}  // namespace vorquill21::tool
