#pragma once

#include "automation/interface.hpp"

namespace vorquill21::automation {

/// Whom the classes are registered for: all users of the machine, which takes an administrator's rights, or
/// the current one.
enum class Scope { kMachine, kUser };

/// Writes what hosts find the classes, their interfaces and the type library by; all of it or nothing.
HRESULT Register(Scope scope) noexcept;

/// Removes it again. What the server of the other bitness shares stays as long as that one is registered.
HRESULT Unregister(Scope scope) noexcept;

}  // namespace vorquill21::automation
