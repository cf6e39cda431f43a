// The copy and copy-album commands of zanfm.
#include "zanfm/copy_commands.h"

#include <list>

#include "zanfm/storage_call.h"
#include "zansong/fileman/copy.h"
#include "zansong/result_codes.h"

namespace zanfm {

CopyCommands::CopyCommands(CLI::App& app) {
  copy_ = app.add_subcommand("copy",
                             "copy songs into an album, or move recordings to the keep "
                             "folder");
  copy_->add_option("SONG", ids_, "catalogue ids of the songs")->required();
  CLI::Option* to = copy_->add_option("--to", to_, "id of the album that receives the copies");
  CLI::Option* keep =
      copy_->add_flag("--keep", keep_, "move the songs into \"Recorded Songs/Keep\" instead");
  to->excludes(keep);

  copyAlbum_ = app.add_subcommand("copy-album", "copy whole albums");
  copyAlbum_->add_option("ALBUM", ids_, "catalogue ids of the albums")->required();
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
  int result = kResultOk;
  std::list<int> ids(ids_.begin(), ids_.end());
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

}  // namespace zanfm
