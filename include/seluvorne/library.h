// The library as a whole, for hosts: what makes it ready in a process.
//
// A host (the command line, the Python module, a test) calls StartLibrary
// once before it creates the library's classes by name. It registers the
// library's own components under their programmatic identifiers, installs the
// window layer and arms the library's start routine, which runs when the
// first object of the library is made. Outside components
// (FolderKit.clsFloorDirs, ...) are the host's to register, before or after;
// RegisterStandaloneComponents (components.h) registers plain ones.
#pragma once

#include "seluvorne/dispatch.h"

namespace seluvorne {

// Registers the library's components and arms the start routine; later
// calls do nothing.
void StartLibrary();

// Fresh library-wide globals, as after a new load of the library; the start
// routine runs again before the next object is made. For tests and
// long-lived hosts.
void RestartLibrary();

// The database engine shared by the whole process, created on first use.
Object DBEngine();

}  // namespace seluvorne
