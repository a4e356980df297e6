#include <algorithm>
#include <cmath>

#include "data_file/commands.hpp"
#include "data_file/data_file.hpp"

namespace vorquill21::tool {
namespace {

struct DiffCommand {
  std::string left;
  std::string right;
  std::int32_t decimals = 0;
  const CLI::Option* hasDecimals = nullptr;

  void Declare(CLI::App& command) {
    DeclareFile(command, left, "The one data file");
    command.add_option("OTHER", right, "The other one")->required()->type_name("");
    hasDecimals =
        command.add_option("--decimals", decimals, "Numbers are equal up to this many decimal places")
            ->type_name("N")
            ->check(NumberBetween(0, 300));
  }

  /// Fields are compared by their names, wherever they stand; numbers by value, whatever their notation.
  ExitCode Run(Session& session, Result& result) const {
    if (left == "-" && right == "-") {
      throw Failure(ExitCode::kUsage, "the two files cannot both be standard input");
    }
    DataFile leftData(session, left);
    DataFile rightData(session, right);
    std::vector<Result::Row> rows;
    for (const Record& record : leftData.Fields()) {
      const auto other = rightData.Read(ToUtf8(record.name));
      if (!other) {
        rows.push_back({ToUtf8(record.name), "removed", ""});
      } else if (const std::string change = Change(leftData, leftData.Read(record), rightData, *other);
                 !change.empty()) {
        rows.push_back({ToUtf8(record.name), "changed", change});
      }
    }
    for (const Record& record : rightData.Fields()) {
      if (!leftData.Read(ToUtf8(record.name))) rows.push_back({ToUtf8(record.name), "added", ""});
    }
    const bool areEqual = rows.empty();
    result.Add("equal", "", areEqual);
    if (areEqual) result.AddText("the fields are equal\n");
    result.AddTable("differences", {{"name", "NAME"}, {"change", "CHANGE"}, {"detail", "DETAIL"}},
                    std::move(rows));
    return areEqual ? ExitCode::kGood : ExitCode::kFindings;
  }

 private:
  bool AreEqual(double one, double other) const {
    if (hasDecimals->count() == 0) return one == other;
    return CMathUtils().NumbersAreEqual(one, other, decimals);
  }

  /// How the field differs; empty when it does not.
  std::string Change(const DataFile& leftData, const Field& one, const DataFile& rightData,
                     const Field& other) const {
    if (one.table && other.table) return TableChange(*one.table, *other.table);
    if (one.table || other.table || one.kind == Field::Kind::kBrokenTable ||
        other.kind == Field::Kind::kBrokenTable) {
      return one.kind == other.kind ? "" : KindName(one.kind) + " became " + KindName(other.kind);
    }
    const auto equal = [&](const Text& value, const Text& otherValue) {
      const auto number = TextToNumber(value, leftData.Separator());
      const auto otherNumber = TextToNumber(otherValue, rightData.Separator());
      return number && otherNumber ? AreEqual(*number, *otherNumber) : value == otherValue;
    };
    if (std::ranges::equal(one.values, other.values, equal)) return {};
    return Joined(one.values) + " became " + Joined(other.values);
  }

  static std::string Joined(const std::vector<Text>& values) {
    if (values.empty()) return "nothing";
    Text joined;
    for (const Text& value : values) {
      if (!joined.empty()) joined += u"  ";
      joined += value;
    }
    return ToUtf8(joined);
  }

  static std::string Shape(const BoundedArray<double>& table) {
    return std::to_string(table.UpperBound(1) + 1) + " x " + std::to_string(table.UpperBound(2) + 1);
  }

  std::string TableChange(const BoundedArray<double>& one, const BoundedArray<double>& other) const {
    if (one.BoundsOf(1) != other.BoundsOf(1) || one.BoundsOf(2) != other.BoundsOf(2)) {
      return Shape(one) + " became " + Shape(other);
    }
    std::size_t count = 0;
    double greatest = 0;
    std::string first;
    for (std::int32_t row = 0; row <= one.UpperBound(1); ++row) {
      for (std::int32_t column = 0; column <= one.UpperBound(2); ++column) {
        if (AreEqual(one(row, column), other(row, column))) continue;
        if (++count == 1) first = "row " + std::to_string(row + 1) + ", column " + std::to_string(column + 1);
        greatest = std::max(greatest, std::abs(one(row, column) - other(row, column)));
      }
    }
    if (count == 0) return {};
    return Counted(count, "cell") + ", from " + first + " on, by up to " + PlainText(greatest);
  }
};

}  // namespace

void AddDiff(CLI::App& app, Work& chosen) {
  AddCommand<DiffCommand>(app, chosen, "diff",
                          "Tell what differs between two data files; exit code 1 when something does",
                          "diff tyre.txt tyre.txt --decimals 3");
}

}  // namespace vorquill21::tool
