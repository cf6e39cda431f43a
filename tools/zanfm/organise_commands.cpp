// zanfm: albums, playlists, renaming, deleting and ordering.
#include "zanfm/organise_commands.h"

#include <unistd.h>

#include <functional>
#include <iostream>
#include <list>
#include <set>

#include "zanfm/catalogue_view.h"
#include "zanfm/host_paths.h"
#include "zanfm/message_view.h"
#include "zanfm/target_words.h"
#include "zansong/async/cancel.h"
#include "zansong/async/list_operations.h"
#include "zansong/db/dbman.h"
#include "zansong/fileman/albums.h"
#include "zansong/fileman/delete.h"
#include "zansong/fileman/messages.h"
#include "zansong/fileman/order.h"
#include "zansong/fileman/playlists.h"
#include "zansong/fileman/rename.h"
#include "zansong/result_codes.h"

namespace zanfm {

namespace {

constexpr int kRenameAlbum = 1;
constexpr int kRenamePlaylist = 2;
constexpr int kRenameSong = 0;

// The storage one command works on.
struct Storage {
  std::string root;  // ends in "/"
  std::string db;    // its catalogue file
  bool stick = false;
  std::string playlistPrefix() const { return stick ? "p" : "l"; }
};

Storage StorageOf(const std::string& usb) {
  Storage s;
  s.root = StorageRoot(usb);
  s.db = s.root + ".zansong.db";
  s.stick = !usb.empty();
  return s;
}

// The code whose message the instrument shows for result: the two
// operations that answer -1 show their own failure message.
int ShownCode(int result, int minusOneMessage) {
  return result == kResultRenameDbFail ? -minusOneMessage : result;
}

// Runs op on the storage, bracketed by usbdb_copy and usbdb_backup for a
// stick, and shows the message of a failed result under label.  Returns
// op's result.
int RunOn(const Storage& s, bool raw, int label, int minusOneMessage,
          const std::function<int(const char* root)>& op) {
  ClearCancelFlag();
  std::string root = s.root;
  return RunShowingMessages(raw, [&] {
    if (s.stick) usbdb_copy(&root[0]);
    int result = op(root.c_str());
    usbdb_backup(&root[0]);
    if (result < 0) PrintErrorMessage(label, ShownCode(result, minusOneMessage));
    return result;
  });
}

// Shows the "no data" message for an id the catalogue does not hold.
int NoSuchId(bool raw, int label, const std::string& what, int id) {
  return NoSuchTarget(raw, label, what + " #" + std::to_string(id));
}

// The prefixes of ids in table; a missing id is reported through the
// result's first member.
struct Lookup {
  int missing = 0;
  std::vector<std::string> prefixes;
};

Lookup LookUp(const Storage& s, const std::string& table, const std::vector<int>& ids) {
  Lookup found;
  for (int id : ids) {
    std::string prefix = PrefixOf(s.db, table, id);
    if (prefix.empty()) {
      found.missing = id;
      break;
    }
    found.prefixes.push_back(prefix);
  }
  return found;
}

// Calls op for each run of consecutive ids of one prefix, in order; stops
// at the first failure and returns its result.
int ForEachPrefixRun(const std::vector<int>& ids, const std::vector<std::string>& prefixes,
                     const std::function<int(std::list<int>&, const std::string&)>& op) {
  size_t i = 0;
  while (i < ids.size()) {
    std::list<int> run;
    const std::string& prefix = prefixes[i];
    while (i < ids.size() && prefixes[i] == prefix) run.push_back(ids[i++]);
    int result = op(run, prefix);
    if (result < 0) return result;
  }
  return kResultOk;
}

int ExitStatus(int result) { return result < 0 ? 1 : 0; }

}  // namespace

OrganiseCommands::OrganiseCommands(CLI::App& app, CLI::App* songs, std::string* usb)
    : usb_(usb), songs_(songs) {
  auto usbOption = [this](CLI::App* cmd) {
    cmd->add_option("--usb", *usb_, "work on the stick NAME (e.g. sda1)");
  };
  album_cmd_ = app.add_subcommand("album", "create, rename or delete albums");
  album_cmd_->require_subcommand(1);
  album_new_ = album_cmd_->add_subcommand("new", "create an album directory and its row");
  album_new_->add_option("TITLE", title_, "title (\"\" gives My Album)")->required();
  album_new_->add_option("--folder", folder_, "category folder, e.g. \"Recorded Songs\"");
  album_rename_ = album_cmd_->add_subcommand("rename", "give album ID a new title");
  album_delete_ = album_cmd_->add_subcommand("delete", "delete albums with their songs' files");
  album_delete_->add_option("ID", words_, "album ids, or KIND:ID targets of any kind")->required();

  playlist_cmd_ = app.add_subcommand("playlist", "create, fill, copy, rename or delete playlists");
  playlist_cmd_->require_subcommand(1);
  playlist_new_ = playlist_cmd_->add_subcommand("new", "create a playlist");
  playlist_new_->add_option("TITLE", title_, "title (\"\" gives My Playlist)")->required();
  playlist_add_ = playlist_cmd_->add_subcommand("add", "add songs (or albums) to PLAYLIST");
  playlist_add_->add_option("PLAYLIST", target_, "playlist id")->required();
  playlist_add_
      ->add_option("SONG", words_, "song ids (album ids with --album), or song:ID and album:ID")
      ->required();
  playlist_add_->add_flag("--album", byAlbum_, "the ids are albums: add all their songs");
  playlist_copy_ = playlist_cmd_->add_subcommand(
      "copy", "copy the songs of playlists into one (a new one titled like the first)");
  playlist_copy_->add_option("SOURCE", ids_, "source playlist ids")->required();
  playlist_copy_->add_option("--into", target_, "existing destination playlist id");
  playlist_remove_ = playlist_cmd_->add_subcommand("remove", "remove playlist entries");
  playlist_remove_->add_option("ENTRY", ids_, "entry ids (see songs --playlist)")->required();
  playlist_rename_ = playlist_cmd_->add_subcommand("rename", "give playlist ID a new title");
  playlist_delete_ = playlist_cmd_->add_subcommand("delete", "delete playlists");
  playlist_delete_->add_option("ID", words_, "playlist ids, or KIND:ID targets of any kind")
      ->required();
  for (CLI::App* rename : {album_rename_, playlist_rename_}) {
    rename->add_option("ID", id_, "id")->required();
    rename->add_option("TITLE", title_, "new title")->required();
  }
  playlists_ = app.add_subcommand("playlists", "list the playlists in display order");
  playlists_->add_flag("--json", json_, "print JSON instead of a table");
  songs_->add_option("--playlist", playlist_, "the entries of playlist ID");

  song_cmd_ = app.add_subcommand("song", "rename, delete or move songs");
  song_cmd_->require_subcommand(1);
  song_rename_ =
      song_cmd_->add_subcommand("rename", "give song ID a new title (also in its MIDI file)");
  song_rename_->add_option("ID", id_, "song id")->required();
  song_rename_->add_option("TITLE", title_, "new title")->required();
  song_rename_->add_flag("--files", files_, "rename the song's files after the title too");
  song_delete_ = song_cmd_->add_subcommand("delete", "delete songs with their files");
  song_delete_->add_option("ID", words_, "song ids, or KIND:ID targets of any kind")->required();
  song_move_ = song_cmd_->add_subcommand("move", "move songs of one album to POSITION");
  song_move_->add_option("ID", ids_, "song ids, in their new order")->required();
  song_move_->add_option("--to", position_, "new position of the first (from 1)")->required();

  reorder_ = app.add_subcommand("reorder", "renumber the display order 1, 2, 3, ...");
  reorder_->add_option("--album", album_, "the songs of album ID (default: the albums)");

  for (CLI::App* cmd : {album_new_, album_rename_, album_delete_, playlist_new_, playlist_add_,
                        playlist_copy_, playlist_remove_, playlist_rename_, playlist_delete_,
                        playlists_, song_rename_, song_delete_, song_move_, reorder_}) {
    usbOption(cmd);
  }
}

bool OrganiseCommands::Chosen() const {
  return *album_cmd_ || *playlist_cmd_ || *playlists_ || *song_cmd_ || *reorder_ ||
         (*songs_ && songs_->count("--playlist") > 0);
}

int OrganiseCommands::Run(bool raw) {
  const Storage s = StorageOf(*usb_);
  if (::access(s.root.c_str(), F_OK) != 0) {
    std::cerr << "zanfm: no storage at " << s.root << "\n";
    return 1;
  }
  if (*album_delete_ || *song_delete_ || *playlist_delete_ || *playlist_add_) {
    // Targets that name their kinds make one request over all of them;
    // bare ids are of the command's own kind.
    const bool adding = playlist_add_->parsed();
    const int bareType = *album_delete_ || (adding && byAlbum_) ? kTargetAlbum
                         : *playlist_delete_                    ? kTargetPlaylist
                                                                : kTargetSong;
    std::vector<TargetInfo> targets;
    bool typed = false;
    std::string bad;
    const bool parsed =
        adding ? ParseTargets(words_, bareType, {kTargetSong, kTargetAlbum}, &targets, &typed, &bad)
               : ParseTargets(words_, bareType,
                              {kTargetSong, kTargetAlbum, kTargetPlaylistSong, kTargetPlaylist},
                              &targets, &typed, &bad);
    if (!parsed) {
      return NoSuchTarget(raw, adding ? kLabelPlaylist : kLabelDelete,
                          (adding ? "target to add: " : "target to delete: ") + bad);
    }
    if (typed) return RunTargetList(raw, targets);
    for (const TargetInfo& t : targets) ids_.push_back(t.id);
  }
  if (*album_cmd_) return RunAlbum(raw);
  if (*playlist_cmd_) return RunPlaylist(raw);
  if (*playlists_) return ListPlaylists();
  if (*song_cmd_) return RunSong(raw);
  if (*reorder_) return RunReorder(raw);
  return ListPlaylistSongs();
}

int OrganiseCommands::RunAlbum(bool raw) {
  const Storage s = StorageOf(*usb_);
  if (*album_new_) {
    int id = RunOn(s, raw, kLabelAlbum, 0, [&](const char* root) {
      return FM_Create_New_Album(root, folder_.c_str(), title_.c_str());
    });
    if (id > 0) std::cout << "Created album #" << id << "\n";
    return ExitStatus(id);
  }
  if (*album_rename_) {
    if (PrefixOf(s.db, "album", id_).empty()) return NoSuchId(raw, kLabelRename, "album", id_);
    int result = RunOn(s, raw, kLabelRename, kMsgFailRename, [&](const char* root) {
      return FH_rename(root, id_, title_.c_str(), kRenameAlbum, 0);
    });
    if (result == kResultOk) std::cout << "Renamed album #" << id_ << "\n";
    return ExitStatus(result);
  }
  Lookup found = LookUp(s, "album", ids_);
  if (found.missing != 0) return NoSuchId(raw, kLabelDelete, "album", found.missing);
  int result = RunOn(s, raw, kLabelDelete, 0, [&](const char* root) {
    return ForEachPrefixRun(ids_, found.prefixes, [&](std::list<int>& run, const std::string& p) {
      return FH_delete_album(root, run, p.c_str());
    });
  });
  if (result == kResultOk) std::cout << "Deleted " << ids_.size() << " album(s)\n";
  return ExitStatus(result);
}

int OrganiseCommands::RunPlaylist(bool raw) {
  const Storage s = StorageOf(*usb_);
  const std::string prefix = s.playlistPrefix();
  if (*playlist_new_) {
    int id = RunOn(s, raw, kLabelPlaylist, 0,
                   [&](const char* root) { return FM_Create_New_Playlist(root, title_.c_str()); });
    if (id > 0) std::cout << "Created playlist #" << id << "\n";
    return ExitStatus(id);
  }
  if (*playlist_rename_) {
    if (PrefixOf(s.db, "playlist", id_).empty()) {
      return NoSuchId(raw, kLabelRename, "playlist", id_);
    }
    int result = RunOn(s, raw, kLabelRename, kMsgFailRename, [&](const char* root) {
      return FH_rename(root, id_, title_.c_str(), kRenamePlaylist, 0);
    });
    if (result == kResultOk) std::cout << "Renamed playlist #" << id_ << "\n";
    return ExitStatus(result);
  }
  if (*playlist_remove_) {
    Lookup found = LookUp(s, "psong", ids_);
    if (found.missing != 0) return NoSuchId(raw, kLabelPlaylist, "playlist entry", found.missing);
    std::list<int> ids(ids_.begin(), ids_.end());
    int result = RunOn(s, raw, kLabelPlaylist, 0,
                       [&](const char* root) { return FH_delete_plsong(root, ids); });
    if (result == kResultOk) std::cout << "Removed " << ids_.size() << " entries\n";
    return ExitStatus(result);
  }
  // add, copy and delete name playlists.
  const std::vector<int> playlists =
      *playlist_add_
          ? std::vector<int>{target_}
          : (*playlist_copy_ && target_ != 0 ? std::vector<int>{target_} : std::vector<int>{});
  std::vector<int> named = playlists;
  if (!*playlist_add_) named.insert(named.end(), ids_.begin(), ids_.end());
  Lookup lists = LookUp(s, "playlist", named);
  if (lists.missing != 0) return NoSuchId(raw, kLabelPlaylist, "playlist", lists.missing);
  if (*playlist_delete_) {
    std::list<int> ids(ids_.begin(), ids_.end());
    int result = RunOn(s, raw, kLabelDelete, 0, [&](const char* root) {
      return FH_delete_album(root, ids, prefix.c_str());
    });
    if (result == kResultOk) std::cout << "Deleted " << ids_.size() << " playlist(s)\n";
    return ExitStatus(result);
  }
  if (*playlist_copy_) {
    std::list<int> ids(ids_.begin(), ids_.end());
    int result = RunOn(s, raw, kLabelPlaylist, 0, [&](const char* root) {
      return FH_Copy_Playlist(root, ids, prefix.c_str(), target_);
    });
    if (result == kResultOk) std::cout << "Copied " << ids_.size() << " playlist(s)\n";
    return ExitStatus(result);
  }
  Lookup songs = LookUp(s, byAlbum_ ? "album" : "song", ids_);
  if (songs.missing != 0) {
    return NoSuchId(raw, kLabelPlaylist, byAlbum_ ? "album" : "song", songs.missing);
  }
  int result = RunOn(s, raw, kLabelPlaylist, 0, [&](const char* root) {
    return ForEachPrefixRun(ids_, songs.prefixes, [&](std::list<int>& run, const std::string& p) {
      return FH_Add_To_Playlist(root, run, p.c_str(), target_, prefix.c_str(), byAlbum_ ? 1 : 0);
    });
  });
  if (result == kResultOk) std::cout << "Added to playlist #" << target_ << "\n";
  return ExitStatus(result);
}

int OrganiseCommands::RunTargetList(bool raw, std::vector<TargetInfo> targets) {
  const Storage s = StorageOf(*usb_);
  const bool adding = playlist_add_->parsed();
  const int label = adding ? kLabelPlaylist : kLabelDelete;
  if (adding && PrefixOf(s.db, "playlist", target_).empty()) {
    return NoSuchId(raw, label, "playlist", target_);
  }
  std::string missing;
  if (!LookUpTargets(s.db, &targets, &missing)) return NoSuchTarget(raw, label, missing);
  const std::string prefix = s.playlistPrefix();
  int status = RunTargetRequest(raw, *usb_, label, [&](const std::string& root) {
    return adding ? FH2_add_to_playlist(root.c_str(), targets, target_, prefix.c_str())
                  : FH2_delete(root.c_str(), targets);
  });
  if (status == 0) {
    std::cout << (adding ? "Added " : "Deleted ") << targets.size() << " target(s)"
              << (adding ? " to playlist #" + std::to_string(target_) : "") << "\n";
  }
  return status;
}

int OrganiseCommands::RunSong(bool raw) {
  const Storage s = StorageOf(*usb_);
  if (*song_rename_) {
    if (PrefixOf(s.db, "song", id_).empty()) return NoSuchId(raw, kLabelRename, "song", id_);
    int result = RunOn(s, raw, kLabelRename, kMsgFailRename, [&](const char* root) {
      return FH_rename(root, id_, title_.c_str(), kRenameSong, files_ ? 1 : 0);
    });
    if (result == kResultOk) std::cout << "Renamed song #" << id_ << "\n";
    return ExitStatus(result);
  }
  Lookup found = LookUp(s, "song", ids_);
  if (found.missing != 0) {
    return NoSuchId(raw, *song_delete_ ? kLabelDelete : kLabelChangeOrder, "song", found.missing);
  }
  if (*song_delete_) {
    int result = RunOn(s, raw, kLabelDelete, 0, [&](const char* root) {
      return ForEachPrefixRun(ids_, found.prefixes, [&](std::list<int>& run, const std::string& p) {
        return FH_delete_song(root, run, p.c_str());
      });
    });
    if (result == kResultOk) std::cout << "Deleted " << ids_.size() << " song(s)\n";
    return ExitStatus(result);
  }
  std::list<int> ids(ids_.begin(), ids_.end());
  int result = RunOn(s, raw, kLabelChangeOrder, 0, [&](const char* root) {
    return FH_sort(root, ids, found.prefixes.front().c_str(), position_, 0);
  });
  if (result == kResultOk) std::cout << "Moved " << ids_.size() << " song(s)\n";
  return ExitStatus(result);
}

int OrganiseCommands::RunReorder(bool raw) {
  const Storage s = StorageOf(*usb_);
  std::vector<std::string> prefixes;
  if (album_ != 0) {
    std::string prefix = PrefixOf(s.db, "album", album_);
    if (prefix.empty()) return NoSuchId(raw, kLabelChangeOrder, "album", album_);
    prefixes.push_back(prefix);
  } else {
    std::vector<AlbumRow> albums;
    ReadAlbums(s.db, &albums);
    std::set<std::string> seen;
    for (const AlbumRow& a : albums) {
      if (seen.insert(a.prefix).second) prefixes.push_back(a.prefix);
    }
  }
  int result = RunOn(s, raw, kLabelChangeOrder, kMsgFailSort, [&](const char* root) {
    for (const std::string& prefix : prefixes) {
      int r = FH_reorder(root, album_, prefix.c_str());
      if (r < 0) return r;
    }
    return static_cast<int>(kResultOk);
  });
  if (result == kResultOk) std::cout << "Renumbered\n";
  return ExitStatus(result);
}

int OrganiseCommands::ListPlaylists() {
  std::vector<PlaylistRow> playlists;
  const Storage s = StorageOf(*usb_);
  if (!ReadPlaylists(s.db, &playlists)) {
    std::cerr << "zanfm: cannot read the catalogue " << s.db << "\n";
    return 1;
  }
  std::cout << (json_ ? PlaylistJson(playlists) : PlaylistTable(playlists));
  return 0;
}

int OrganiseCommands::ListPlaylistSongs() {
  std::vector<SongRow> songs;
  const Storage s = StorageOf(*usb_);
  if (!ReadPlaylistSongs(s.db, playlist_, &songs)) {
    std::cerr << "zanfm: cannot read the catalogue " << s.db << "\n";
    return 1;
  }
  bool json = songs_->count("--json") > 0;
  std::cout << (json ? SongJson(songs) : SongTable(songs));
  return 0;
}

}  // namespace zanfm
