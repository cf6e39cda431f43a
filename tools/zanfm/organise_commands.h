// zanfm's commands that organise a catalogue: albums, playlists, renaming,
// deleting and ordering songs, each calling the library's operation the
// way the instrument's file manager does.
//
//   album new TITLE [--folder FOLDER] | rename ID TITLE | delete ID...
//   playlist new TITLE | add PLAYLIST SONG... [--album] |
//            copy SOURCE... [--into PLAYLIST] | remove ENTRY... |
//            rename ID TITLE | delete ID...
//   playlists [--json]          songs --playlist ID (added to "songs")
//   song rename ID TITLE [--files] | delete ID... | move ID... --to POSITION
//   reorder [--album ID]
//
// The delete commands and playlist add also take targets that name their
// kind, KIND:ID (song, album, psong, playlist; song and album for playlist
// add), beside bare ids of the command's own kind: such a request runs over
// all its targets in one child process of the library (FH2_delete,
// FH2_add_to_playlist), its progress shown as one updating line; Ctrl-C
// cancels it, and the cancel is reported.
//
// Every command takes --usb NAME for a stick, whose catalogue is worked on
// between usbdb_copy and usbdb_backup.  Ids are checked against the
// catalogue first, as the file manager offers only what it lists.  A
// failure is shown as the message the instrument would show for the
// library's result, and the command exits with status 1; success exits 0.
#ifndef ZANFM_ORGANISE_COMMANDS_H_
#define ZANFM_ORGANISE_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "zansong/async/targets.h"

namespace zanfm {

class OrganiseCommands {
 public:
  // Adds the commands to app and --playlist to the existing songs command;
  // every --usb option writes *usb.
  OrganiseCommands(CLI::App& app, CLI::App* songs, std::string* usb);

  // Whether the parsed command line chose one of these commands.
  bool Chosen() const;
  // Runs the chosen command on the image the system root points at; the
  // exit status.  raw passes the library's lines through unchanged.
  int Run(bool raw);

 private:
  int RunAlbum(bool raw);
  int RunPlaylist(bool raw);
  int RunSong(bool raw);
  int RunReorder(bool raw);
  // A delete or playlist add whose targets name their kinds.
  int RunTargetList(bool raw, std::vector<TargetInfo> targets);
  int ListPlaylists();
  int ListPlaylistSongs();

  std::string* usb_;
  std::string title_, folder_;
  std::vector<int> ids_;
  std::vector<std::string> words_;
  int id_ = 0, target_ = 0, position_ = 0, album_ = 0, playlist_ = 0;
  bool byAlbum_ = false, files_ = false, json_ = false;
  CLI::App* songs_;
  CLI::App *album_cmd_, *album_new_, *album_rename_, *album_delete_;
  CLI::App *playlist_cmd_, *playlist_new_, *playlist_add_, *playlist_copy_, *playlist_remove_,
      *playlist_rename_, *playlist_delete_, *playlists_;
  CLI::App *song_cmd_, *song_rename_, *song_delete_, *song_move_, *reorder_;
};

}  // namespace zanfm

#endif  // ZANFM_ORGANISE_COMMANDS_H_
