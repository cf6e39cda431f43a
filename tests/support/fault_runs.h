// Running one operation under every fault it can meet.
//
// A FaultyOperation describes an operation for RunUnderEveryFault: which
// calls to count (see fault_injection.h), how to lay out its storage in a
// fresh device image, how to run it, which catalogue files it leaves, and
// what else must hold afterwards.  Adding an operation is a few lines:
//
//   FaultyOperation op;
//   op.target = FaultTarget::kCatalogue;
//   op.setUp = [](DeviceImage& image) { ... songs, catalogue ... };
//   op.run = [](DeviceImage& image) { return FM_X(...) == kResultOk; };
//   op.catalogues = [](DeviceImage& image) { return {image.SongRoot() + ".zansong.db"}; };
//   op.check = [](DeviceImage& image, int failAt, bool succeeded) { ... };
//   EXPECT_GT(RunUnderEveryFault(op), 0);
//
// RunUnderEveryFault(op) lays out an image and runs op.setUp on it, before
// any fault is armed; then it runs the operation once with the calls only
// counted (it must succeed), and once for every N from 1 to that count
// with call N and all later ones failing, each time in a fresh copy of
// that prepared image.  After each run it checks, as
// test expectations traced with N:
//  - the result: failure when a fault was made, success otherwise;
//  - every file of op.catalogues that exists passes PRAGMA integrity_check;
//  - op.check(image, N, succeeded) (N is 0 for the counting run), where the
//    operation's own rules are tested: no row committed before the fault
//    lost, a replaced file either the old or the new one.
// Returns the number of calls counted in the first run.
#ifndef ZANSONG_TESTS_SUPPORT_FAULT_RUNS_H_
#define ZANSONG_TESTS_SUPPORT_FAULT_RUNS_H_

#include <functional>
#include <string>
#include <vector>

#include "support/device_image.h"
#include "support/fault_injection.h"

namespace zansong_test {

struct FaultyOperation {
  FaultTarget target = FaultTarget::kCatalogue;
  std::function<void(DeviceImage&)> setUp;
  std::function<bool(DeviceImage&)> run;
  std::function<std::vector<std::string>(DeviceImage&)> catalogues;
  std::function<void(DeviceImage&, int failAt, bool succeeded)> check;
};

int RunUnderEveryFault(const FaultyOperation& op);

// PRAGMA integrity_check of the catalogue file at path: "ok" when sound.
std::string IntegrityOf(const std::string& path);

}  // namespace zansong_test

#endif  // ZANSONG_TESTS_SUPPORT_FAULT_RUNS_H_
