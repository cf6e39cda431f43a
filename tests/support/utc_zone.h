// Runs a test in UTC, whatever the machine's time zone.
//
// While a UtcZone lives, TZ is "UTC" (and tzset has been called), so that
// local-time texts of file times are known in advance; the destructor puts
// the previous TZ (or its absence) back.
#ifndef ZANSONG_TESTS_SUPPORT_UTC_ZONE_H_
#define ZANSONG_TESTS_SUPPORT_UTC_ZONE_H_

#include <string>

namespace zansong_test {

class UtcZone {
 public:
  UtcZone();
  ~UtcZone();
  UtcZone(const UtcZone&) = delete;
  UtcZone& operator=(const UtcZone&) = delete;

 private:
  bool hadZone_ = false;
  std::string oldZone_;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_UTC_ZONE_H_
