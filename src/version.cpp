#include "seluvorne/version.h"

namespace seluvorne {

const char* LibraryVersion() {
  return SELUVORNE_VERSION;
}

}  // namespace seluvorne
