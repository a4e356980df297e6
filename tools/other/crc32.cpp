#include <array>

#include "other/commands.hpp"

namespace vorquill21::tool {
namespace {

/// A polynomial over the integers modulo 2 of degree below 32; the highest bit is the constant term.
using Polynomial = std::uint32_t;
constexpr Polynomial kOne = Polynomial{1} << 31;

/// left * right modulo the polynomial of the CRC.
Polynomial Product(Polynomial left, Polynomial right) {
  constexpr Polynomial kModulus = 0xEDB88320;
  Polynomial product = 0;
  for (Polynomial term = kOne; term != 0; term >>= 1) {
    if ((left & term) != 0) product ^= right;
    right = (right & 1) != 0 ? (right >> 1) ^ kModulus : right >> 1;
  }
  return product;
}

/// x^(8 * bytes).
Polynomial ShiftBy(std::uint64_t bytes) {
  Polynomial power = Product(kOne >> 4, kOne >> 4);
  Polynomial shift = kOne;
  for (; bytes != 0; bytes >>= 1) {
    if ((bytes & 1) != 0) shift = Product(shift, power);
    power = Product(power, power);
  }
  return shift;
}

/// The checksum of bytes that arrive in blocks: the library's checksum of each block, put together.
class RunningChecksum {
 public:
  explicit RunningChecksum(Platform& platform) : file_(platform), locale_(platform.GetLocale()) {}

  void Add(std::string_view block) {
    const std::string hexadecimal = ToUtf8(file_.Crc32Make(FromCodePage(locale_, block)));
    const auto checksum = static_cast<std::uint32_t>(std::stoul(hexadecimal, nullptr, 16));
    if (block.size() != shiftedBytes_) {
      shiftedBytes_ = block.size();
      shift_ = ShiftBy(shiftedBytes_);
    }
    value_ = Product(shift_, value_) ^ checksum;
    bytes_ += block.size();
  }

  std::uint32_t Value() const noexcept { return value_; }
  std::uint64_t Bytes() const noexcept { return bytes_; }

 private:
  CFile file_;
  const Locale& locale_;
  std::uint32_t value_ = 0;
  std::uint64_t bytes_ = 0;
  std::uint64_t shiftedBytes_ = 0;
  Polynomial shift_ = kOne;
};

struct Crc32Command {
  std::vector<std::string> files;

  void Declare(CLI::App& command) {
    command.add_option("FILE", files, "The files; \"-\" is standard input")->required()->type_name("");
  }

  ExitCode Run(Session& session, Result& result) const {
    ByteLocale bytes(session.GetLocale());
    Platform platform(session.GetFiles(), session.GetDesktop(), bytes, session.GetPlatform().GetProcess(),
                      session.GetPlatform().GetSettings());
    std::vector<Result::Row> rows;
    for (const std::string& file : files) {
      RunningChecksum checksum(platform);
      AddFile(session, file, checksum);
      std::array<char, 9> text{};
      std::snprintf(text.data(), text.size(), "%08X", checksum.Value());
      rows.push_back({text.data(), checksum.Bytes(), file});
    }
    result.AddTable("files", {{"crc32", "CRC-32"}, {"bytes", "BYTES"}, {"file", "FILE"}}, std::move(rows));
    return ExitCode::kGood;
  }

 private:
  static void AddFile(Session& session, const std::string& file, RunningChecksum& checksum) {
    try {
      const auto reader = session.GetFiles().OpenForReading(FromUtf8(file));
      std::vector<char> block(std::size_t{1} << 20);
      while (const std::size_t count = reader->Read(block)) checksum.Add({block.data(), count});
    } catch (const LibraryError& error) {
      throw CannotRead(file, error);
    }
  }
};

}  // namespace

void AddCrc32(CLI::App& app, Work& chosen) {
  AddCommand<Crc32Command>(app, chosen, "crc32", "The CRC-32 of files", "crc32 tyre.txt");
}

}  // namespace vorquill21::tool
