// The common shape of the operations over a list of targets (delete, copy,
// add to a playlist): each is a per-target call handed to RunTargetList.
//
// TargetCall: the single-target operation for one target, run in the child
//   process; returns its result code (negative on a failure), and kResultOk
//   without doing anything for a target type the operation does not handle.
//
// WorkThroughTargets(targets, call, checkCancel, channel): the child's work.
//   For each target in order, index i from 0: runs call(target); when
//   checkCancel (copies) and the cancel flag is set, returns
//   -kResultCopyCancelled at once (before reporting i); writes i as "%d\n"
//   to channel; when call's result was negative, returns its magnitude (the
//   child's exit code, which FH2_async turns back into the result code),
//   leaving the later targets untouched.  Returns 0 after the last target.
//
// RunTargetList(targets, call, checkCancel, progress): FH2_async over the
//   targets with WorkThroughTargets as the child's work; returns its result
//   (0, the failing target's result code, -31 for a copy that noticed the
//   cancel flag).
#ifndef ZANSONG_SRC_ASYNC_TARGET_LIST_H_
#define ZANSONG_SRC_ASYNC_TARGET_LIST_H_

#include <functional>
#include <vector>

#include "ush.h"
#include "zansong/async/targets.h"

namespace zansong {

using TargetCall = std::function<int(const TargetInfo& target)>;

enum class CancelCheck { kNone, kBeforeEachReport };

int WorkThroughTargets(const std::vector<TargetInfo>& targets, const TargetCall& call,
                       CancelCheck cancel, ush_st_io* channel);

int RunTargetList(std::vector<TargetInfo>& targets, const TargetCall& call, CancelCheck cancel,
                  std::function<void(int)> progress);

}  // namespace zansong

#endif  // ZANSONG_SRC_ASYNC_TARGET_LIST_H_
