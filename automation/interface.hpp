#pragma once

// The interfaces of vorquill21.idl as the server sees them: a structure whose first word points to a table of
// functions, so that the tables can be made of function templates. Hosts in C++ see the same interfaces as
// abstract classes.

#include <ocidl.h>
#include <ole2.h>
#include <windows.h>

#define CINTERFACE
#include "vorquill21_automation.h"
#undef CINTERFACE
