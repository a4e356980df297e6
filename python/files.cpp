#include "python/binding.hpp"
#include "python/module.hpp"
#include "vorquill21/files/file.hpp"
#include "vorquill21/files/os_utils.hpp"

namespace vorquill21::python {

void AddFiles(py::module_& module) {
  using C = CFile;
  Class<C, Calls::kLong>(
      module, "CFile",
      "Paths taken apart, and whole files and folders. Only DirMakeNested and EnsureExtension raise\n"
      "errors; the others return what their failure is.")
      .Constructor()
      .Method<&C::BrowseForFolder>("BrowseForFolder",
                                   "Lets the user pick a folder; asFolder stays without a choice.",
                                   "anOwnerFormhWnd"_a, "asTitleText"_a, "asFolder"_a)
      .Method<&C::CompareFiles>("CompareFiles", "Whether two text files are equal, ignoring letter case.",
                                "asFilePath1"_a, "asFilePath2"_a)
      .Method<&C::Crc32Make>("Crc32Make", "The CRC-32 of a text in the code page, in hexadecimal.",
                             "asCheckText"_a)
      .Method<&C::DirExists>("DirExists", "Whether the path names a folder.", "asPath"_a)
      .Method<&C::DirMake>("DirMake", "Makes a folder; True when it is there.", "asDirPath"_a)
      .Method<&C::DirMakeNested>("DirMakeNested", "Makes every missing folder along a path.", "asPath"_a)
      .Method<&C::FileExists>("FileExists", "Whether the name, or pattern, stands for a file.",
                              "asFileName"_a)
      .Method<&C::FileReadAsString>("FileReadAsString", "Reads a whole file without one line end at its end.",
                                    "asFilePath"_a, "asFileString"_a, "abSilent"_a = true)
      .Method<&C::FileWriteAsString>("FileWriteAsString", "Makes a text and CR LF the content of a file.",
                                     "asFilePath"_a, "asFileString"_a, "abSilent"_a = true)
      .Method<&C::ListFilesMatchingExt>(
          "ListFilesMatchingExt", "The names of the files with an extension; asFilesList stays without any.",
          "asDir"_a, "asExtension"_a, "asFilesList"_a, "anFilesCount"_a)
      .Method<&C::OpenDoc>("OpenDoc", "Opens a document with its program; if it fails, asMsg says why.",
                           "asDocName"_a, "asMsg"_a)
      .Method<&C::ParseFileDir>("ParseFileDir", R"(The folder part of a path, with its last "\\".)",
                                "asFilePath"_a)
      .Method<&C::ParseFileExt>("ParseFileExt", "The extension of a path, without the dot.", "asFilePath"_a)
      .Method<&C::ParseFileName>("ParseFileName", "Name and extension of a path.", "asFilePath"_a)
      .Method<&C::ParseFileTitle>("ParseFileTitle", "The name of a path without folder and extension.",
                                  "asFilePath"_a)
      .Method<&C::EnsureExtension>("EnsureExtension", "The path with the extension asExt.", "asFilePath"_a,
                                   "asExt"_a);

  Class<COSUtils, Calls::kLong>(module, "COSUtils", "What the operating system knows.")
      .Constructor()
      .Method<&COSUtils::GetSpecialFolderPath>(
          "GetSpecialFolderPath", "Finds a special folder; asPath is its path or why there is none.",
          "anCLSID"_a, "asPath"_a);
}

}  // namespace vorquill21::python
