// The copy and copy-album commands of zanfm.
#include "zanfm/copy_commands.h"

#include <list>

#include "zanfm/host_paths.h"
#include "zanfm/storage_call.h"
#include "zanfm/target_words.h"
#include "zansong/async/cancel.h"
#include "zansong/async/list_operations.h"
#include "zansong/fileman/copy.h"
#include "zansong/result_codes.h"

namespace zanfm {

namespace {

// The targets of type, in order.
std::vector<TargetInfo> OfType(const std::vector<TargetInfo>& targets, int type) {
  std::vector<TargetInfo> found;
  for (const TargetInfo& t : targets) {
    if (t.type == type) found.push_back(t);
  }
  return found;
}

}  // namespace

CopyCommands::CopyCommands(CLI::App& app) {
  copy_ = app.add_subcommand("copy",
                             "copy songs into an album, or move recordings to the keep "
                             "folder; with song:ID, album:ID and playlist:ID several kinds "
                             "at once");
  copy_->add_option("SONG", words_, "catalogue ids of the songs, or KIND:ID targets")->required();
  CLI::Option* to = copy_->add_option("--to", to_, "id of the album that receives the copies");
  CLI::Option* keep =
      copy_->add_flag("--keep", keep_, "move the songs into \"Recorded Songs/Keep\" instead");
  to->excludes(keep);
  copy_->add_option("--folder", folder_, "category folder of the new albums of album:ID targets");

  copyAlbum_ = app.add_subcommand("copy-album", "copy whole albums");
  copyAlbum_->add_option("ALBUM", words_, "catalogue ids of the albums (or album:ID)")->required();
  CLI::Option* folder = copyAlbum_->add_option(
      "--folder", folder_, "category folder of the new albums (default: the general area)");
  CLI::Option* into =
      copyAlbum_->add_option("--into", into_, "id of an existing album that receives the songs");
  folder->excludes(into);

  for (CLI::App* command : {copy_, copyAlbum_}) {
    command->add_option("--usb", usb_, "work on the stick NAME (e.g. sda1)");
  }
}

bool CopyCommands::Chosen() const { return copy_->parsed() || copyAlbum_->parsed(); }

int CopyCommands::Run(bool xml) {
  const bool albums = copyAlbum_->parsed();
  std::vector<TargetInfo> targets;
  bool typed = false;
  std::string bad;
  const bool parsed =
      albums ? ParseTargets(words_, kTargetAlbum, {kTargetAlbum}, &targets, &typed, &bad)
             : ParseTargets(words_, kTargetSong, {kTargetSong, kTargetAlbum, kTargetPlaylist},
                            &targets, &typed, &bad);
  if (!parsed) return NoSuchTarget(xml, kLabelCopy, "target to copy: " + bad);
  if (typed) return RunTargetList(xml, targets);

  int result = kResultOk;
  std::list<int> ids;
  for (const TargetInfo& t : targets) ids.push_back(t.id);
  if (copy_->parsed()) {
    if (!keep_ && to_ == 0) {
      std::cerr << "zanfm: copy needs --to ALBUM or --keep\n";
      return 1;
    }
    return RunOnStorage(
        xml, usb_, kLabelCopy, true,
        [&](const std::string& root) {
          return FH_copy_song_usb(root.c_str(), ids, keep_ ? 0 : to_);
        },
        &result);
  }
  return RunOnStorage(
      xml, usb_, kLabelCopy, true,
      [&](const std::string& root) {
        return FH_copy_album(root.c_str(), ids, folder_.c_str(), into_);
      },
      &result);
}

int CopyCommands::RunTargetList(bool xml, std::vector<TargetInfo> targets) {
  std::vector<TargetInfo> songs = OfType(targets, kTargetSong);
  if (!songs.empty() && !keep_ && to_ == 0) {
    std::cerr << "zanfm: copying songs needs --to ALBUM or --keep\n";
    return 1;
  }
  if (into_ != 0) {
    std::cerr << "zanfm: --into takes album ids without their kind\n";
    return 1;
  }
  std::string missing;
  if (!LookUpTargets(StorageRoot(usb_) + ".zansong.db", &targets, &missing)) {
    return NoSuchTarget(xml, kLabelCopy, missing);
  }
  songs = OfType(targets, kTargetSong);
  std::vector<TargetInfo> albums = OfType(targets, kTargetAlbum);
  std::vector<TargetInfo> playlists = OfType(targets, kTargetPlaylist);
  return RunTargetRequest(xml, usb_, kLabelCopy, [&](const std::string& root) {
    int result = kResultOk;
    // The next kind only after a success that was not cancelled.
    auto goOn = [&result] { return result == kResultOk && !GetCancelFlag(); };
    if (!songs.empty()) result = FH2_copy_song(root.c_str(), songs, keep_ ? 0 : to_);
    if (goOn() && !albums.empty()) result = FH2_copy_album(root.c_str(), albums, folder_.c_str());
    if (goOn() && !playlists.empty()) result = FH2_copy_playlist(root.c_str(), playlists);
    return result;
  });
}

}  // namespace zanfm
