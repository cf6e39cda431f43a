// Targets of a request named on the command line, and running a request
// over them through the library's list operations.
//
// A target word is KIND:ID, KIND one of "song", "album", "psong" (a
// playlist entry) and "playlist", or a bare ID of the command's own kind.
//
// ParseTargets(words, bareType, accepted, targets, typed, bad): the
//   targets of words in order (type code and id; the prefix is filled in
//   by LookUpTargets).  *typed is set when a word names its kind.  False,
//   with the word in *bad, for a word that is no target or whose kind is
//   not among accepted.
// LookUpTargets(db, targets, missing): gives each target the prefix of its
//   row in the catalogue file db; false, with the target's word in
//   *missing, for the first target that has no row.
// TargetWord(target): its KIND:ID word.
// NoSuchTarget(xml, label, what): tells on standard error that there is no
//   `what` and shows the "no data" message under label, as the instrument
//   does for something it cannot find; returns 1, the exit status.
// RunTargetRequest(xml, usb, label, op): runs op(root) on the storage of
//   usb as RunOnStorage does, the progress box shown as one updating line;
//   a run that the user cancelled (Ctrl-C raised the cancel flag) is
//   reported as cancelled, with what was done before the cancel kept.  The
//   exit status: 0 only for a run that succeeded and was not cancelled.
#ifndef ZANFM_TARGET_WORDS_H_
#define ZANFM_TARGET_WORDS_H_

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "zansong/async/targets.h"

namespace zanfm {

bool ParseTargets(const std::vector<std::string>& words, int bareType,
                  std::initializer_list<int> accepted, std::vector<TargetInfo>* targets,
                  bool* typed, std::string* bad);
bool LookUpTargets(const std::string& db, std::vector<TargetInfo>* targets, std::string* missing);
std::string TargetWord(const TargetInfo& target);
int NoSuchTarget(bool xml, int label, const std::string& what);
int RunTargetRequest(bool xml, const std::string& usb, int label,
                     const std::function<int(const std::string& root)>& op);

}  // namespace zanfm

#endif  // ZANFM_TARGET_WORDS_H_
