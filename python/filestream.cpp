#include "python/binding.hpp"
#include "python/module.hpp"
#include "vorquill21/filestream/file_stream.hpp"

namespace vorquill21::python {

void AddFileStream(py::module_& module) {
  using C = CFileStream;
  const py::ellipsis missing;
  Class<C, Calls::kExclusive>(module, "CFileStream",
                              "A structured data file: a text document of named fields.")
      .Constructor()
      .Method<&C::AddField>("AddField", "Adds a field with one value or a list of them.", "asFieldName"_a,
                            "avFieldValues"_a)
      .Method<&C::AddTable2d>("AddTable2d", "Adds a table of two dimensions.", "asTableName"_a, "avTable"_a)
      .Method<&C::AddTable3d>("AddTable3d", "Adds the pages from 1 on of a table (row, column, page).",
                              "asTableName"_a, "avTable"_a, "anEndRowIdx"_a = 0, "anEndlnColIdx"_a = 0,
                              "anEndPageIdx"_a = 0)
      .Method<&C::FileRead>("FileRead", "Reads a file as the document.", "asFilePath"_a, "asFileStream"_a)
      .Method<&C::FileWrite>("FileWrite", "Writes the document to a file.", "asFilePath"_a,
                             "abAppend"_a = false)
      .Method<&C::GetContents>("GetContents", "The document, completed by version and decimal separator.")
      .Method<&C::GetFieldNumber>("GetFieldNumber", "The values of a field as numbers.", "asFieldName"_a,
                                  "avDefaultValues"_a = missing)
      .Method<&C::GetFieldString>("GetFieldString", "The values of a field as texts.", "asFieldName"_a,
                                  "avDefaultValues"_a = missing)
      .Method<&C::GetTable2d>("GetTable2d", "A table as an array, or None.", "asTableName"_a)
      .Method<&C::GetTable3d>("GetTable3d", "The pages of a table as an array (row, column, page), or False.",
                              "asTableName"_a, "anEndRowIdx"_a, "anEndColIdx"_a, "anEndPageIdx"_a)
      .Method<&C::Initialise>("Initialise", "Starts a new document of a version.", "asCurrentVersion"_a,
                              "aaCompatibleVersions"_a)
      .Method<&C::IsCompatibleVersion>("IsCompatibleVersion",
                                       "Whether the document's version is one that is read.", "abSilent"_a,
                                       "asActualVersion"_a = missing, "asCurrentVersion"_a = missing,
                                       "asCompatibleVersions"_a = missing, "asStatus"_a)
      .Method<&C::RemoveField>("RemoveField", "Removes a field; False when there is none.", "asFieldName"_a)
      .Method<&C::SetContents>("SetContents", "Makes a text the document.", "asFileStream"_a)
      .Method<&C::FieldExists>("FieldExists", "Whether the document has a field.", "asFieldName"_a)
      .Method<&C::FileVersion>("FileVersion", "The version of the document.")
      .Method<&C::FileVersionNumber>("FileVersionNumber", "The last word of the version, as a number.")
      .Method<&C::FileVersionType>("FileVersionType", "The first word of the version.");
}

}  // namespace vorquill21::python
