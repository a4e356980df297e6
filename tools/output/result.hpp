#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <variant>
#include <vector>

namespace vorquill21::tool {

/// A value of a result: null, a boolean, a number, a text in UTF-8, or an array of these.
using Value = nlohmann::ordered_json;

/// One thing that should be looked at.
struct Finding {
  std::string kind;       ///< a word that scripts can rely on, such as "ragged-row"
  std::string message;    ///< for the user
  std::string field;      ///< the field of a data file or the column that it is about; may be empty
  std::int64_t line = 0;  ///< counted from 1; 0 when it is about no line
};

/// What a command has to say, said once: it is printed for people or, with --json, for programs.
class Result {
 public:
  struct Column {
    std::string key;
    std::string label;
  };
  using Row = std::vector<Value>;

  /// A named value: "label: value", or the member `key`. Without a label only programs see it,
  /// without a key only people.
  void Add(std::string key, std::string label, Value value) {
    parts_.emplace_back(Named{std::move(key), std::move(label), std::move(value)});
  }

  /// A list of things with the same properties: a table with a heading for each column (nothing when it has
  /// no rows), or an array of objects.
  void AddTable(std::string key, std::vector<Column> columns, std::vector<Row> rows) {
    parts_.emplace_back(Table{std::move(key), std::move(columns), std::move(rows), false});
  }

  /// The same for few things with many properties: for people each thing is a column.
  void AddRecords(std::string key, std::vector<Column> columns, std::vector<Row> rows) {
    parts_.emplace_back(Table{std::move(key), std::move(columns), std::move(rows), true});
  }

  /// Cells of one page of a table; the number 0 is that of a table without pages.
  struct Page {
    std::int32_t number = 0;
    std::vector<Row> cells;
  };

  /// Pages of a table: tables without headings, or an array of objects with the members "page" and "cells".
  void AddPages(std::string key, std::vector<Page> pages) {
    parts_.emplace_back(Pages{std::move(key), std::move(pages)});
  }

  /// An array of values, each on a line of its own.
  void AddLines(std::string key, Value values) {
    parts_.emplace_back(Lines{std::move(key), std::move(values)});
  }

  /// Text that only people see.
  void AddText(std::string text) { parts_.emplace_back(std::move(text)); }

  void AddFinding(Finding finding) { findings_.push_back(std::move(finding)); }

  /// Standard output holds data already: nothing is to be printed.
  void Silence() { isSilent_ = true; }
  bool IsSilent() const noexcept { return isSilent_; }

  /// Commands that look for something have the member "findings" even when there are none.
  void ReportFindings() { reportsFindings_ = true; }
  const std::vector<Finding>& Findings() const noexcept { return findings_; }

  /// The text for people. Control characters in it are made visible; findings stand out with `inColour`.
  std::string ForPeople(bool inColour) const;

  /// One JSON object and a line end.
  std::string ForPrograms() const;

 private:
  struct Named {
    std::string key;
    std::string label;
    Value value;
  };
  struct Table {
    std::string key;
    std::vector<Column> columns;
    std::vector<Row> rows;
    bool isTransposed;
  };
  struct Pages {
    std::string key;
    std::vector<Page> pages;
  };
  struct Lines {
    std::string key;
    Value values;
  };
  using Part = std::variant<Named, Table, Pages, Lines, std::string>;

  static std::string PartForPeople(const Part& part, std::size_t labelWidth);
  static void AddForPrograms(const Part& part, Value& object);

  std::vector<Part> parts_;
  std::vector<Finding> findings_;
  bool reportsFindings_ = false;
  bool isSilent_ = false;
};

/// JSON in the program's form: indented by two blanks, bytes that are no UTF-8 replaced, a line end.
std::string JsonText(const Value& value);

/// A value for people: numbers with 15 digits and a point, nothing for null, arrays separated by blanks.
std::string PlainText(const Value& value);

/// "1 cell", "2 cells".
std::string Counted(std::size_t count, const std::string& thing);

/// `text` with control characters as \xHH, so that no file can command the terminal.
std::string Visible(std::string_view text);

}  // namespace vorquill21::tool
