// zanfm's copy commands:
//   copy SONG... --to ALBUM [--usb NAME]     copy songs (catalogue ids) into
//                                            an album
//   copy SONG... --keep [--usb NAME]         move recordings into
//                                            "Recorded Songs/Keep"
//   copy-album ALBUM... [--folder FOLDER | --into ALBUM] [--usb NAME]
//                                            copy albums as new albums of a
//                                            category folder, or into one
//   copy TARGET... [--to ALBUM | --keep] [--folder FOLDER] [--usb NAME]
//   copy-album album:ID... [--folder FOLDER] [--usb NAME]
//                                            several targets of mixed kinds
//                                            (song:ID, album:ID,
//                                            playlist:ID) in one request:
//                                            the songs into ALBUM (or the
//                                            keep folder), the albums as
//                                            new albums of FOLDER, the
//                                            playlists as new playlists,
//                                            each kind through the library's
//                                            list operation for it, in that
//                                            order, stopping at the first
//                                            failure
// The copy shows its progress as one updating line; Ctrl-C cancels it.
#ifndef ZANFM_COPY_COMMANDS_H_
#define ZANFM_COPY_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "zansong/async/targets.h"

namespace zanfm {

class CopyCommands {
 public:
  // Adds the subcommands to app.
  explicit CopyCommands(CLI::App& app);

  // Whether one of them was chosen on the command line.
  bool Chosen() const;
  // Runs the chosen one on the device image set as system root; the exit
  // status (0 only on success).
  int Run(bool xml);

 private:
  // A request naming the kinds of its targets.
  int RunTargetList(bool xml, std::vector<TargetInfo> targets);

  CLI::App* copy_;
  CLI::App* copyAlbum_;
  std::vector<std::string> words_;
  int to_ = 0;
  bool keep_ = false;
  std::string folder_;
  int into_ = 0;
  std::string usb_;
};

}  // namespace zanfm

#endif  // ZANFM_COPY_COMMANDS_H_
