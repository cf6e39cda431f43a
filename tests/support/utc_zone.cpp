#include "support/utc_zone.h"

#include <cstdlib>
#include <ctime>

namespace zansong_test {

UtcZone::UtcZone() {
  const char* tz = std::getenv("TZ");
  hadZone_ = tz != nullptr;
  if (hadZone_) oldZone_ = tz;
  setenv("TZ", "UTC", 1);
  tzset();
}

UtcZone::~UtcZone() {
  if (hadZone_) {
    setenv("TZ", oldZone_.c_str(), 1);
  } else {
    unsetenv("TZ");
  }
  tzset();
}

}  // namespace zansong_test
