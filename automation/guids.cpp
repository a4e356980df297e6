// The identifiers of the type library are defined here.
#include <initguid.h>

#include "automation/interface.hpp"
