// The library as a whole, for hosts: what makes it ready in a process.
//
// A host (the command line, the Python module, a test) calls StartLibrary
// once before it creates the library's classes by name. It registers the
// library's own components under their programmatic identifiers and runs the
// library's start routine. Outside components (FolderKit.clsFloorDirs, ...)
// are the host's to register, before or after.
#pragma once

#include "seluvorne/dispatch.h"

namespace seluvorne {

// Registers the library's components and runs the start routine; later
// calls do nothing.
void StartLibrary();

// Runs the start routine again: fresh library-wide globals, as after a new
// load of the library. For tests and long-lived hosts.
void RestartLibrary();

// The database engine shared by the whole process, created on first use.
Object DBEngine();

}  // namespace seluvorne
