#include <algorithm>
#include <array>
#include <chrono>
#include <deque>
#include <thread>

#include "columns/line_splitter.hpp"
#include "log/entries.hpp"
#include "program/arguments.hpp"

namespace vorquill21::tool {
namespace {

struct FilterOptions {
  LogFilter filter;
  std::string since;
  std::string until;
  std::string dateOrder;

  void Declare(CLI::App& command) {
    command.add_option("--text", filter.text, "Only lines that hold this text, in whatever letter case")
        ->type_name("TEXT");
    LimitTo(command.add_option("--kind", filter.kinds, "Only lines of this kind; may be given several times")
                ->allow_extra_args(false),
            LogKinds());
    command.add_option("--period", filter.period, "Only this logging period, counted from 1")
        ->type_name("N")
        ->check(PositiveNumber());
    command
        .add_option("--since", since, "Only periods that started then or later, such as \"2026-11-21 10:05\"")
        ->type_name("TIME");
    command.add_option("--until", until, "Only periods that started then or before")->type_name("TIME");
    LimitTo(command.add_option("--date-order", dateOrder,
                               "How the log writes dates: dmy, mdy or ymd (as the user's locale)"),
            {"dmy", "mdy", "ymd"});
  }

  LogFilter Filter() const {
    LogFilter wanted = filter;
    wanted.since = MomentOf(since);
    wanted.until = MomentOf(until);
    wanted.dateOrder = dateOrder.empty() ? DateOrderOfUser() : DateOrderNamed(dateOrder);
    return wanted;
  }

 private:
  static std::optional<Moment> MomentOf(const std::string& text) {
    if (text.empty()) return std::nullopt;
    const std::optional<Moment> moment = MomentOfUser(text);
    if (!moment) throw Failure(ExitCode::kUsage, "\"" + text + R"(" is no time such as "2026-11-21 10:05")");
    return moment;
  }
};

const std::vector<Result::Column> kLineColumns{
    {"line", "LINE"}, {"kind", "KIND"}, {"period", "PERIOD"}, {"started", "STARTED"}, {"text", "TEXT"}};

Result::Row RowOf(const LogLine& line) {
  return {line.number, line.kind, line.period, line.started.empty() ? Value() : Value(line.started),
          line.text};
}

/// For people: the line as it is, problems in colour.
std::string LineForPeople(const LogLine& line, bool inColour) {
  const bool isProblem = line.kind == "warning" || line.kind == "error";
  return (inColour && isProblem ? "\033[33m" + Visible(line.text) + "\033[0m" : Visible(line.text)) + "\n";
}

/// For programs: an object on a line of its own.
std::string LineForPrograms(const LogLine& line) {
  const Result::Row row = RowOf(line);
  Value object;
  for (std::size_t i = 0; i < row.size(); ++i) object[kLineColumns[i].key] = row[i];
  return object.dump(-1, ' ', false, Value::error_handler_t::replace) + "\n";
}

std::unique_ptr<ByteReader> Open(Session& session, const std::string& file) {
  try {
    return session.GetFiles().OpenForReading(FromUtf8(file));
  } catch (const LibraryError& error) {
    throw CannotRead(file, error);
  }
}

/// Calls `take` with the bytes that are left, block by block.
template <typename Take>
std::uint64_t ReadBlocks(ByteReader& reader, Take take) {
  std::array<char, 1 << 16> block;
  std::uint64_t bytes = 0;
  while (const std::size_t count = reader.Read(block)) {
    take(std::string_view(block.data(), count));
    bytes += count;
  }
  return bytes;
}

struct LogShowCommand {
  std::string file;
  FilterOptions options;

  void Declare(CLI::App& command) {
    DeclareFile(command, file, "The log");
    options.Declare(command);
  }

  ExitCode Run(Session& session, Result& result) const {
    const LogFilter filter = options.Filter();
    const bool inColour = session.GetTerminal().OutputHasColour();
    LogReader log;
    LineSplitter splitter;
    std::vector<Result::Row> rows;
    std::string text;
    const auto take = [&](std::string_view bytes) {
      const LogLine line = log.Take(bytes);
      if (!filter.Accepts(line)) return;
      if (session.wantsJson) {
        rows.push_back(RowOf(line));
      } else {
        text += LineForPeople(line, inColour);
      }
    };
    ReadBlocks(*Open(session, file), [&](std::string_view block) {
      splitter.Add(block, take);
      if (!text.empty()) session.WriteFile("-", text);
      text.clear();
    });
    splitter.Finish(take);
    result.AddTable("lines", kLineColumns, std::move(rows));
    result.AddText(text);
    return ExitCode::kGood;
  }
};

struct LogFollowCommand {
  std::string file;
  FilterOptions options;
  std::size_t lastLines = 10;
  double seconds = 0;

  void Declare(CLI::App& command) {
    command.add_option("FILE", file, "The log")->required()->type_name("");
    options.Declare(command);
    command.add_option("--lines", lastLines, "Begin with this many lines that are there already")
        ->type_name("N")
        ->capture_default_str();
    command.add_option("--for", seconds, "Stop after this many seconds; 0 goes on until it is interrupted")
        ->type_name("SECONDS")
        ->capture_default_str()
        ->check(NumberFromZero());
  }

  /// A log that is cut or begun anew is read from its beginning.
  ExitCode Run(Session& session, Result& result) const {
    constexpr std::chrono::milliseconds kPause{100};
    if (file == "-")
      throw Failure(ExitCode::kUsage, "standard input cannot be followed; \"log show -\" reads it");
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    Follower follower{session, options.Filter()};
    follower.ReadNew(*Open(session, file), lastLines);
    while (seconds == 0 || std::chrono::steady_clock::now() < end) {
      if (follower.isUnheard) break;
      std::this_thread::sleep_for(kPause);
      try {
        follower.ReadNew(*session.GetFiles().OpenForReading(FromUtf8(file)), Follower::kAll);
      } catch (const LibraryError&) {
        follower.StartOver();  // between two periods the file may be missing
      }
    }
    result.Silence();
    return ExitCode::kGood;
  }

 private:
  struct Follower {
    static constexpr std::size_t kAll = static_cast<std::size_t>(-1);

    Session& session;
    LogFilter filter;
    bool isUnheard = false;  ///< nobody reads the output any more
    LogReader log = {};
    LineSplitter splitter = {};
    std::uint64_t position = 0;

    void StartOver() {
      log = {};
      splitter = {};
      position = 0;
    }

    void ReadNew(ByteReader& reader, std::size_t most) {
      if (reader.Length() < position) StartOver();
      if (reader.Length() == position) return;
      reader.Skip(position);
      std::deque<LogLine> lines;
      const auto take = [&](std::string_view bytes) {
        const LogLine line = log.Take(bytes);
        if (!filter.Accepts(line)) return;
        lines.push_back(line);
        if (lines.size() > most) lines.pop_front();
      };
      position += ReadBlocks(reader, [&](std::string_view block) { splitter.Add(block, take); });
      Print(lines);
    }

    void Print(const std::deque<LogLine>& lines) {
      Terminal& terminal = session.GetTerminal();
      std::string text;
      for (const LogLine& line : lines) {
        text += session.wantsJson ? LineForPrograms(line) : LineForPeople(line, terminal.OutputHasColour());
      }
      isUnheard = !terminal.Write(text);
    }
  };
};

}  // namespace

void AddLogCommands(CLI::App& app, Work& chosen) {
  CLI::App& log =
      AddGroup(app, "log", "Show and follow logs", "log show session.log --kind warning --kind error");
  AddCommand<LogShowCommand>(log, chosen, "show", "Print the lines of a log, all or some",
                             "log show session.log --kind warning --text sensor");
  AddCommand<LogFollowCommand>(log, chosen, "follow", "Print the lines of a log as they are added",
                               "log follow session.log --kind error");
}

}  // namespace vorquill21::tool
