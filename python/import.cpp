#include "python/binding.hpp"
#include "python/module.hpp"
#include "vorquill21/import/import_column_data.hpp"

namespace vorquill21::python {
namespace {

using C = CImportColumnData;

template <typename T>
using Get = T (C::*)() const;
template <typename T>
using Let = void (C::*)(T);
using GetNumber = std::int32_t (C::*)() const noexcept;
using LetNumber = void (C::*)(std::int32_t) noexcept;

}  // namespace

void AddImport(py::module_& module) {
  Class<C, Calls::kExclusive>(module, "CImportColumnData", "Reads a delimited text file of numeric columns.")
      .Constructor()
      .Property<&C::ColumnCount>("ColumnCount", "Number of columns that the header line gave.")
      .Method<&C::ColumnData>("ColumnData", "A whole column as an array, or the value at anDataIndex.",
                              "anColumnIndex"_a, "anDataIndex"_a = -1)
      .Method<&C::ColumnHeaderData>("ColumnHeaderData", "The header of a column.", "anIndex"_a)
      .Property<&C::DataRowCount>("DataRowCount", "Number of values in each column.")
      .Property<static_cast<Get<Text>>(&C::Delimiter), static_cast<Let<TextView>>(&C::Delimiter)>(
          "Delimiter", "The text between two fields.")
      .Property<static_cast<Get<Text>>(&C::Filepath), static_cast<Let<TextView>>(&C::Filepath)>(
          "Filepath", "The file to be imported.")
      .Property<static_cast<GetNumber>(&C::FirstValueRow), static_cast<LetNumber>(&C::FirstValueRow)>(
          "FirstValueRow", "Number of the first line of values, the first line being 1.")
      .Property<static_cast<GetNumber>(&C::HeaderRow), static_cast<LetNumber>(&C::HeaderRow)>(
          "HeaderRow", "Number of the header line, the first line being 1.")
      .Method<&C::Import>("Import", "Imports the file; asStatus says what failed or was left out.",
                          "asStatus"_a)
      .Property<&C::LastImportSuccessful>("LastImportSuccessful", "Whether the last Import succeeded.")
      .Property<static_cast<GetNumber>(&C::MaxColumns), static_cast<LetNumber>(&C::MaxColumns)>(
          "MaxColumns", "One more than the number of columns that are kept.")
      .Method<&C::OffsetColumnData>("OffsetColumnData",
                                    "Subtracts arOffsetValue from every value of a column.",
                                    "anColumnIndex"_a, "arOffsetValue"_a)
      .Method<&C::SettingsReadFromRegistry>(
          "SettingsReadFromRegistry", "Sets HeaderRow, FirstValueRow and Delimiter from the user's settings.")
      .Method<&C::SettingsWriteToRegistry>(
          "SettingsWriteToRegistry", "Stores HeaderRow, FirstValueRow and Delimiter in the user's settings.");
}

}  // namespace vorquill21::python
