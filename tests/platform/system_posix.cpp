#include "tests/platform/system_posix.hpp"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace vorquill21::test {
namespace {

constexpr uid_t kSuperuser = 0;
constexpr uid_t kOrdinaryUser = 65534;

void SetEffectiveUser(uid_t user) {
  if (::seteuid(user) != 0) throw std::runtime_error("the user could not be changed");
}

}  // namespace

AsOrdinaryUser::AsOrdinaryUser() {
  if (::getuid() == kSuperuser) SetEffectiveUser(kOrdinaryUser);
}

AsOrdinaryUser::~AsOrdinaryUser() {
  if (::getuid() == kSuperuser) SetEffectiveUser(kSuperuser);
}

ScopedVariable::ScopedVariable(const char* name, const char* value) : name_(name) {
  const char* oldValue = ::getenv(name);
  wasSet_ = oldValue != nullptr;
  if (wasSet_) oldValue_ = oldValue;
  value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
}

ScopedVariable::~ScopedVariable() {
  wasSet_ ? ::setenv(name_.c_str(), oldValue_.c_str(), 1) : ::unsetenv(name_.c_str());
}

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::ranges::sort(names);
  return names;
}

std::string ContentOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream) throw std::runtime_error("no such file: " + path);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteContent(const std::string& path, const std::string& content) {
  std::ofstream stream(path, std::ios::binary);
  stream << content;
  if (!stream.flush()) throw std::runtime_error("not written: " + path);
}

std::size_t OpenDescriptors() {
  return NamesIn("/proc/self/fd").size();
}

}  // namespace vorquill21::test
