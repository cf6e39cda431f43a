// zanfm's copy commands:
//   copy SONG... --to ALBUM [--usb NAME]     copy songs (catalogue ids) into
//                                            an album
//   copy SONG... --keep [--usb NAME]         move recordings into
//                                            "Recorded Songs/Keep"
//   copy-album ALBUM... [--folder FOLDER | --into ALBUM] [--usb NAME]
//                                            copy albums as new albums of a
//                                            category folder, or into one
// The copy shows its progress as one updating line; Ctrl-C cancels it.
#ifndef ZANFM_COPY_COMMANDS_H_
#define ZANFM_COPY_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

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
  CLI::App* copy_;
  CLI::App* copyAlbum_;
  std::vector<int> ids_;
  int to_ = 0;
  bool keep_ = false;
  std::string folder_;
  int into_ = 0;
  std::string usb_;
};

}  // namespace zanfm

#endif  // ZANFM_COPY_COMMANDS_H_
