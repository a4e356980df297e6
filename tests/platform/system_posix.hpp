#pragma once

#include <string>
#include <vector>

namespace vorquill21::test {

/// Acts as a user whom permissions bind, until destroyed. Who runs the tests without special rights is one
/// already.
class AsOrdinaryUser {
 public:
  AsOrdinaryUser();
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
  ~AsOrdinaryUser();
};

/// Sets a variable of the environment, or removes it for a null value, until destroyed.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value);
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable();

 private:
  std::string name_;
  std::string oldValue_;
  bool wasSet_;
};

/// The names in a folder in order, hidden ones too.
std::vector<std::string> NamesIn(const std::string& folder);

/// The whole content of a file, by means of the standard library.
std::string ContentOf(const std::string& path);
void WriteContent(const std::string& path, const std::string& content);

/// The number of descriptors that the process has open.
std::size_t OpenDescriptors();

}  // namespace vorquill21::test
