// Target words of the command line and requests over lists of targets.
#include "zanfm/target_words.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "zanfm/catalogue_view.h"
#include "zanfm/message_view.h"
#include "zanfm/storage_call.h"
#include "zansong/async/cancel.h"
#include "zansong/fileman/messages.h"
#include "zansong/result_codes.h"

namespace zanfm {

namespace {

// What a cancelled run that still returned 0 gives back to RunOnStorage:
// no message of the table, so that it shows none.
constexpr int kCancelledRun = 1;

// The catalogue table of a target type's rows.
const char* TableOf(int type) {
  switch (type) {
    case kTargetSong:
      return "song";
    case kTargetAlbum:
      return "album";
    case kTargetPlaylistSong:
      return "psong";
    case kTargetPlaylist:
      return "playlist";
    default:
      return "";
  }
}

// The positive number text is, or 0.
int IdOf(const std::string& text) {
  if (text.empty() || text.size() > 9 ||
      !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return 0;
  }
  return std::atoi(text.c_str());
}

}  // namespace

bool ParseTargets(const std::vector<std::string>& words, int bareType,
                  std::initializer_list<int> accepted, std::vector<TargetInfo>* targets,
                  bool* typed, std::string* bad) {
  targets->clear();
  *typed = false;
  for (const std::string& word : words) {
    TargetInfo target{};
    const size_t colon = word.find(':');
    if (colon == std::string::npos) {
      target.type = bareType;
      target.id = IdOf(word);
    } else {
      *typed = true;
      target.type = FH2_get_target_type(word.substr(0, colon).c_str());
      target.id = IdOf(word.substr(colon + 1));
    }
    if (target.id == 0 ||
        std::find(accepted.begin(), accepted.end(), target.type) == accepted.end()) {
      *bad = word;
      return false;
    }
    targets->push_back(target);
  }
  return true;
}

bool LookUpTargets(const std::string& db, std::vector<TargetInfo>* targets, std::string* missing) {
  for (TargetInfo& target : *targets) {
    const std::string prefix = PrefixOf(db, TableOf(target.type), target.id);
    if (prefix.empty()) {
      *missing = TargetWord(target);
      return false;
    }
    target.pfix = prefix[0];
  }
  return true;
}

std::string TargetWord(const TargetInfo& target) {
  return std::string(TableOf(target.type)) + ":" + std::to_string(target.id);
}

int NoSuchTarget(bool xml, int label, const std::string& what) {
  std::cerr << "zanfm: no " << what << "\n";
  RunShowingMessages(xml, [label] {
    PrintErrorMessage(label, kResultNoData);
    return 0;
  });
  return 1;
}

int RunTargetRequest(bool xml, const std::string& usb, int label,
                     const std::function<int(const std::string& root)>& op) {
  int result = kResultOk;
  int status = RunOnStorage(
      xml, usb, label, true,
      [&op](const std::string& root) {
        int r = op(root);
        return r == kResultOk && GetCancelFlag() ? kCancelledRun : r;
      },
      &result);
  if (result == kCancelledRun || result == kResultCopyCancelled) {
    std::cerr << "zanfm: cancelled; what was done before the cancel stays\n";
  }
  return status;
}

}  // namespace zanfm
