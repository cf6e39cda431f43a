// zanfm's commands for downloaded songs.
//
//   download PACKAGE... [--album-dir DIR --album-title TITLE]
//            [--title T --composer C --genre G --purchased DATE] [--usb NAME]
//     Copies the package files into a download folder of the image
//     (<root>/tmp/zanfm-download-*), decodes each with the library's
//     package decoders, sorts the decoded files into MIDI (".mid"), audio
//     (".wav", ".mp3") and cover (".jpg", ".jpeg"), and files them with
//     FM_Copy_UlqSong into "Downloaded Songs" of the internal storage or
//     the stick NAME.  The song's mtime is the decoded song file's
//     modification time as "YYYY-MM-DD hh:mm:ss".  Shows the library's
//     lines and the message line of the result as the user reads it (raw
//     with --xml), removes the download folder, and exits 0 only when the
//     song was filed.
//   downloaded [--usb NAME] [--json]
//     Lists the albums of prefix "y" in display order, each with its songs.
//
// DownloadCommands adds both to the program; after the command line is
// parsed and the system root set, chosen() tells whether one of them was
// asked for and Run() runs it.
//
// DemoDownloads(xml) is the demo's step: it generates packages (an album
// song with its WAV companion and cover, a single song) in the image,
// files them on the internal storage and lists the downloaded songs.
// Returns 0 on success, else 1 after printing why.
#ifndef ZANFM_DOWNLOAD_COMMAND_H_
#define ZANFM_DOWNLOAD_COMMAND_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace zanfm {

struct DownloadOptions {
  std::vector<std::string> packages;
  std::string albumDir;
  std::string albumTitle;
  std::string title;
  std::string composer;
  std::string genre;
  std::string purchased;
  std::string usb;
  bool json = false;
};

class DownloadCommands {
 public:
  explicit DownloadCommands(CLI::App& app);

  bool chosen() const { return *download_ || *downloaded_; }
  int Run(bool xml) const;

 private:
  DownloadOptions options_;
  CLI::App* download_;
  CLI::App* downloaded_;
};

// Decodes and files one download; 0 when it was filed, else 1.
int FileDownload(const DownloadOptions& o, bool xml);
// Lists the "Downloaded Songs" area; 0, or 1 when the catalogue cannot be
// read.
int ListDownloaded(const std::string& usb, bool json);
int DemoDownloads(bool xml);

}  // namespace zanfm

#endif  // ZANFM_DOWNLOAD_COMMAND_H_
