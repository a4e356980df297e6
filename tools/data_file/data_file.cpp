#include "data_file/data_file.hpp"

#include <algorithm>
#include <map>

namespace vorquill21::tool {
namespace {

SnapshotFiles Snapshot(Session& session, const std::string& path) {
  try {
    return {session.GetFiles(), FromUtf8(path)};
  } catch (const LibraryError& error) {
    throw CannotRead(path, error);
  }
}

/// What a new file of that version holds.
SnapshotFiles NewFile(Session& session, const std::string& path, const Text& version) {
  CFileStream stream(session.GetPlatform());
  stream.Initialise(version, BoundedArray<Variant>::Empty());
  return {session.GetFiles(), FromUtf8(path),
          ToCodePage(session.GetLocale(), stream.GetContents() + u"\r\n")};
}

/// The separator that the file declares; "." when it declares none, or none that can be one.
char16_t DeclaredSeparator(Session& session, const std::string& bytes) {
  CFileStream stream(session.GetPlatform());
  stream.SetContents(FromCodePage(session.GetLocale(), bytes));
  const Variant declared = stream.GetFieldString(u"DEC SEP");
  const Text* separator = declared.If<Text>();
  return separator != nullptr && separator->size() == 1 ? separator->front() : u'.';
}

/// "LATERAL FORCE PAGE 2" is page 2 of "LATERAL FORCE"; 0 when the name is that of no page.
std::int32_t PageNumber(TextView name, Text& tableName) {
  constexpr TextView kPage = u" PAGE ";
  const std::size_t at = name.rfind(kPage);
  if (at == TextView::npos) return 0;
  const TextView digits = name.substr(at + kPage.size());
  constexpr std::size_t kMostDigits = 9;
  if (digits.empty() || digits.size() > kMostDigits || digits.front() == u'0') return 0;
  if (digits.find_first_not_of(u"0123456789") != TextView::npos) return 0;
  tableName = name.substr(0, at);
  return static_cast<std::int32_t>(*TextToNumber(digits, u'.'));
}

/// What a field reads as, whatever it is.
Variant Reading(CFileStream& stream, const Text& name) {
  return stream.FieldExists(name) ? stream.GetFieldString(name) : Variant();
}

}  // namespace

std::string KindName(Field::Kind kind) {
  switch (kind) {
    case Field::Kind::kEmpty:
      return "empty";
    case Field::Kind::kNumber:
      return "number";
    case Field::Kind::kNumbers:
      return "numbers";
    case Field::Kind::kText:
      return "text";
    case Field::Kind::kTexts:
      return "texts";
    case Field::Kind::kTable:
      return "table";
    default:
      return "broken table";
  }
}

DataFile::DataFile(Session& session, const std::string& path, Purpose purpose)
    : DataFile(session, path, Snapshot(session, path), purpose) {}

DataFile::DataFile(Session& session, const std::string& path, const Text& version)
    : DataFile(session, path, NewFile(session, path, version), Purpose::kUse) {}

DataFile::DataFile(Session& session, const std::string& path, SnapshotFiles files, Purpose purpose)
    : files_(std::move(files)),
      locale_(session.GetLocale(), DeclaredSeparator(session, files_.Bytes())),
      platform_(files_, session.GetDesktop(), locale_, session.GetPlatform().GetProcess(),
                session.GetPlatform().GetSettings()),
      stream_(std::make_unique<CFileStream>(platform_)) {
  const bool isEmpty = files_.Bytes().empty();
  isRefused_ = isEmpty || !stream_->FileRead(FromUtf8(path), &contents_);
  if (isRefused_ && purpose == Purpose::kUse) {
    throw Failure(ExitCode::kRefused, isEmpty ? path + " is empty, which is no data file"
                                              : session.GetDesktop().LastMessage("cannot read " + path));
  }
  if (isRefused_) {
    contents_ = FromCodePage(session.GetLocale(), files_.Bytes());
    stream_->SetContents(contents_);
  }
  records_ = RecordsOf(contents_);
  for (std::size_t i = 0; i < records_.size(); ++i) firstRecords_.emplace(records_[i].name, i);
}

std::vector<Record> DataFile::Fields() const {
  std::vector<Record> fields;
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (records_[i].startsLine && firstRecords_.at(records_[i].name) == i) fields.push_back(records_[i]);
  }
  return fields;
}

Field DataFile::Read(const Record& record) {
  Field field;
  if (IsTable(record, contents_)) {
    const Variant table = stream_->GetTable2d(record.name);
    if (!table.IsEmpty()) field.table = table.As<BoundedArray<double>>();
    field.kind = field.table ? Field::Kind::kTable : Field::Kind::kBrokenTable;
    return field;
  }
  const Variant values = stream_->GetFieldString(record.name);
  if (values.IsArray()) {
    for (std::int32_t i = 0; i <= ArrayBounds(values).upper; ++i) {
      field.values.push_back(ToText(ArrayElement(values, i), Separator()));
    }
  } else if (const Text* text = values.If<Text>(); text != nullptr && !text->empty()) {
    field.values.push_back(*text);
  }
  if (field.values.empty()) return field;
  const bool isNumeric =
      std::ranges::all_of(field.values, [this](const Text& value) { return IsNumber(value); });
  const bool isSingle = field.values.size() == 1;
  if (isNumeric) {
    field.kind = isSingle ? Field::Kind::kNumber : Field::Kind::kNumbers;
  } else {
    field.kind = isSingle ? Field::Kind::kText : Field::Kind::kTexts;
  }
  return field;
}

std::optional<Field> DataFile::Read(const std::string& name) {
  const Text sought = FromUtf8(name);
  const auto record = firstRecords_.find(sought);
  if (record == firstRecords_.end()) return std::nullopt;
  return Read(records_[record->second]);
}

std::vector<PageRun> DataFile::PageRuns() {
  std::map<Text, PageRun> runs;
  std::vector<Text> order;
  const std::vector<Record> fields = Fields();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    Text name;
    const std::int32_t page = PageNumber(fields[i].name, name);
    if (page == 0) continue;
    const Field field = Read(fields[i]);
    if (!field.table) continue;
    const std::int32_t rows = field.table->UpperBound(1) + 1;
    const std::int32_t columns = field.table->UpperBound(2) + 1;
    const auto run = runs.find(name);
    if (page == 1) {
      runs[name] = {name, i, 1, rows, columns};
      order.push_back(name);
    } else if (run != runs.end() && run->second.pages == page - 1 && run->second.rows == rows &&
               run->second.columns == columns) {
      run->second.pages = page;
    }
  }
  std::vector<PageRun> found;
  for (const Text& name : order) found.push_back(runs[name]);
  return found;
}

void DataFile::PrepareForChanges() {
  const std::size_t last = contents_.find_last_not_of(u"\r\n");
  Text document = last == Text::npos ? Text() : contents_.substr(0, last + 1) + u"\r\n";
  stream_->SetContents(document);
}

void DataFile::Write(const std::string& path, const Text& changed) {
  CFileStream before(platform_);
  before.SetContents(contents_);
  const Text pages = changed + u" PAGE ";
  for (const Record& record : records_) {
    if (record.name == changed || record.name.starts_with(pages)) continue;
    if (Reading(before, record.name) == Reading(*stream_, record.name)) continue;
    throw Failure(ExitCode::kRefused,
                  "refused, as the field " + ToUtf8(record.name) +
                      " would be damaged; \"vorquill21 lint\" tells what is wrong with the file");
  }
  try {
    stream_->FileWrite(FromUtf8(path));
  } catch (const LibraryError& error) {
    throw FailureOf("cannot write " + path, error);
  }
}

void RequireStorable(Session& session, const Text& text) {
  if (FromCodePage(session.GetLocale(), ToCodePage(session.GetLocale(), text)) == text) return;
  throw Failure(ExitCode::kRefused,
                "refused, as the code page of data files does not hold all of \"" + ToUtf8(text) + "\"");
}

}  // namespace vorquill21::tool
