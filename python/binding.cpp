#include "python/binding.hpp"

namespace vorquill21::python {
namespace {

/// "(result, anIndex)" of several, the bare name of one.
std::string Joined(const std::vector<std::string>& names) {
  std::string joined;
  for (const std::string& name : names) joined.append(joined.empty() ? "" : ", ").append(name);
  return names.size() == 1 ? joined : std::string(1, '(').append(joined).append(")");
}

}  // namespace

std::string Shown(const py::arg& parameter) {
  return parameter.name;
}

std::string Shown(const py::arg_v& parameter) {
  const bool isMissing = parameter.value.is(py::ellipsis());
  const std::string value = isMissing ? "..." : py::cast<std::string>(py::repr(parameter.value));
  return std::string(parameter.name).append("=").append(value);
}

std::string Description(const std::string& name, const std::vector<std::string>& inputs,
                        const std::vector<py::arg_v>& results, bool hasOwnResult, const std::string& doc) {
  std::string head = name + "(self";
  for (const std::string& input : inputs) head.append(", ").append(input);
  if (!results.empty()) head += ", *";
  std::vector<std::string> returned;
  if (hasOwnResult) returned.emplace_back("the result");
  for (const py::arg_v& result : results) {
    head.append(", ").append(Shown(result));
    returned.emplace_back(result.name);
  }
  const std::string end =
      results.empty() ? "" : std::string("\n\nReturns ").append(Joined(returned)).append(".");
  return head.append(")\n--\n\n").append(doc).append(end);
}

}  // namespace vorquill21::python
