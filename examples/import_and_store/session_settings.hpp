#pragma once

#include <map>
#include <tuple>

#include "vorquill21/vorquill21.hpp"

namespace example {

/// Settings that last as long as the program, so that the example leaves the user's own alone.
class SessionSettings : public vorquill21::Settings {
 public:
  vorquill21::Text Get(vorquill21::TextView application, vorquill21::TextView section,
                       vorquill21::TextView key, vorquill21::TextView defaultText) const override {
    const auto found = values_.find(Name(application, section, key));
    return found == values_.end() ? vorquill21::Text(defaultText) : found->second;
  }

  void Set(vorquill21::TextView application, vorquill21::TextView section, vorquill21::TextView key,
           vorquill21::TextView value) override {
    values_[Name(application, section, key)] = value;
  }

 private:
  using FullName = std::tuple<vorquill21::Text, vorquill21::Text, vorquill21::Text>;

  static FullName Name(vorquill21::TextView application, vorquill21::TextView section,
                       vorquill21::TextView key) {
    using vorquill21::UpperCase;
    return {UpperCase(application), UpperCase(section), UpperCase(key)};
  }

  std::map<FullName, vorquill21::Text> values_;
};

}  // namespace example
