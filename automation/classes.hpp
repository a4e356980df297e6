#pragma once

#include <span>

#include "automation/interface.hpp"
#include "automation/object.hpp"

namespace vorquill21::automation {

/// A class that hosts can make objects of.
struct ClassEntry {
  const CLSID& classId;
  const IID& interfaceId;
  const IID* eventsId;  // null for a class without events
  const wchar_t* name;
  Reference<Object> (*make)();
};

/// All classes.
std::span<const ClassEntry* const> AllClasses() noexcept;

/// The class with this identifier, or null.
const ClassEntry* FindClass(REFCLSID classId) noexcept;

}  // namespace vorquill21::automation
