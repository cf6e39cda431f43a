#include "async/target_list.h"

#include <cstddef>
#include <utility>

#include "zansong/async/cancel.h"
#include "zansong/async/runner.h"
#include "zansong/result_codes.h"

namespace zansong {

int WorkThroughTargets(const std::vector<TargetInfo>& targets, const TargetCall& call,
                       CancelCheck cancel, ush_st_io* channel) {
  for (size_t i = 0; i < targets.size(); ++i) {
    int result = call(targets[i]);
    if (cancel == CancelCheck::kBeforeEachReport && GetCancelFlag()) {
      return -kResultCopyCancelled;
    }
    ush_Printf(channel, "%d\n", static_cast<int>(i));
    if (result < 0) return -result;
  }
  return 0;
}

int RunTargetList(std::vector<TargetInfo>& targets, const TargetCall& call, CancelCheck cancel,
                  std::function<void(int)> progress) {
  return FH2_async(
      targets,
      [&targets, &call, cancel](ush_st_io* channel) {
        return WorkThroughTargets(targets, call, cancel, channel);
      },
      std::move(progress));
}

}  // namespace zansong
