// The version of the loaded library, for a client that wants to check the
// library it runs against (the headers it was built with carry the same
// number as SeluVorneDS_VERSION in the CMake package and in seluvorne.pc).
#pragma once

namespace seluvorne {

// "major.minor.patch" of the shared library.
const char* LibraryVersion();

}  // namespace seluvorne
