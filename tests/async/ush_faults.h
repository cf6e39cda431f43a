// Faults injected into the event loop for the tests of this program.
//
// The program defines ush_Exec_Fork, ush_Exec_SendSignal, ush_Timer and
// ush_Timer_Start itself; being part of the executable, these take the
// place of libush.so's for every caller, and pass each call on to the
// library unless a fault is set:
//  - fork_fails: ush_Exec_Fork returns null, as when fork fails;
//  - timer_fails: ush_Timer returns null;
//  - timer_held: ush_Timer_Start records the interval and starts nothing,
//    so that the timer never expires (a job that ends "within one period").
// They also count what was asked: the forks, the intervals started, the
// signals sent.
// UshFaultsScope resets everything on construction and destruction.
#ifndef ZANSONG_TESTS_ASYNC_USH_FAULTS_H_
#define ZANSONG_TESTS_ASYNC_USH_FAULTS_H_

#include <cstdint>
#include <vector>

namespace zansong_test {

struct UshFaults {
  bool fork_fails = false;
  bool timer_fails = false;
  bool timer_held = false;
  int forks = 0;
  std::vector<int64_t> intervals;
  std::vector<int> signals;
};

UshFaults& Faults();

class UshFaultsScope {
 public:
  UshFaultsScope() { Faults() = UshFaults(); }
  ~UshFaultsScope() { Faults() = UshFaults(); }
  UshFaultsScope(const UshFaultsScope&) = delete;
  UshFaultsScope& operator=(const UshFaultsScope&) = delete;
};

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_ASYNC_USH_FAULTS_H_
