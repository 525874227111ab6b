#include "runtime/ErrorLog.h"

#include <zor/Notify.h>

namespace zorBinding {

void logError(char const* function, char const* file, int line, std::exception const& error) noexcept {
  try {
    zor::Notify& log = zor::Notify::instance();
    log.setDebugStrings(function, file, line, zor::Notify::NOTIFY_ERROR);
    log.stream() << error.what() << '\n' << zor::endMessage;
  } catch (...) {
    // The log is the last resort: there is nowhere left to report to.
  }
}

} // namespace zorBinding
