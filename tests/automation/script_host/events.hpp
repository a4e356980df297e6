#pragma once

#include <ocidl.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/automation/script_host/com.hpp"

namespace script_host {

/// The connections of a script to the events of its objects.
class Events {
 public:
  ~Events();

  /// Calls the script's procedure PREFIX + EVENT, where there is one, for each event of the object's default
  /// source, with the arguments of the event. Raises HostError when the object has no events.
  void Connect(IDispatch& script, IDispatch& object, const std::wstring& prefix);

  /// Ends the connections to an object. Raises HostError when there is none.
  void Disconnect(IDispatch& object);

 private:
  struct Connection {
    Owned<IUnknown> identity;
    Owned<IConnectionPoint> point;
    DWORD cookie;
  };

  std::vector<Connection> connections_;
};

}  // namespace script_host
