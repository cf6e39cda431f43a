// FH_rename: new titles for albums, playlists and songs; a song's title
// also goes into its MIDI file, and its files may follow the title.
#include <cstdio>
#include <string>

#include "fileman/catalogue_session.h"
#include "zansong/common/path.h"
#include "zansong/fileman/rename.h"
#include "zansong/formats/smf.h"
#include "zansong/result_codes.h"
#include "zansong/storage/files.h"
#include "zansong/storage/naming.h"

namespace {

constexpr int kKindAlbum = 1;
constexpr int kKindPlaylist = 2;

// One song file and the name it gets: full paths.
struct SongFile {
  std::string path;
  std::string renamed;
  bool present() const { return !path.empty(); }
};

// The base name (no extension) that newTitle gives in the directory of
// file, made unique there.  The title's file name is handed over with the
// file's extension, so that a dot inside the title stays in the name.
std::string NewBaseName(const std::string& file, const char* newTitle) {
  const TSString dir = ExtractFileDirSX(file.c_str()) + "/";
  const TSString name = GetExternalName2(newTitle) + ExtractFileExtSX(file.c_str());
  return GetExternalCopyFileName3(dir, name).c_str();
}

// The path of file in its directory under base name base, its extension
// kept.
std::string RenamedPath(const std::string& file, const std::string& base) {
  return std::string(ExtractFileDirSX(file.c_str()).c_str()) + "/" + base +
         ExtractFileExtSX(file.c_str()).c_str();
}

int RenameSong(TDBSongMan& man, const std::string& root, int id, const char* newTitle,
               bool renameFiles) {
  if (man.GetTextByID("song", "song_title", id) == newTitle) return kResultOk;
  const std::string midiPath = man.GetTextByID("song", "midi_path", id).c_str();
  const std::string audioPath = man.GetTextByID("song", "audio_path", id).c_str();
  SongFile midi{midiPath.empty() ? "" : root + midiPath, ""};
  SongFile audio{audioPath.empty() ? "" : root + audioPath, ""};

  int result = kResultOk;
  std::string base;
  if (midi.present()) {
    if (SetSMFTitle(midi.path.c_str(), newTitle)) {
      if (!man.SetTextByID("song", "mtime", id, GetModifyTime(midi.path.c_str()).c_str())) {
        return kResultRenameDbFail;
      }
    } else {
      result = kResultRenameDbFail;
    }
    base = NewBaseName(midi.path, newTitle);
  } else if (audio.present()) {
    base = NewBaseName(audio.path, newTitle);
  }
  if (midi.present()) midi.renamed = RenamedPath(midi.path, base);
  if (audio.present()) audio.renamed = RenamedPath(audio.path, base);

  // The title is written even when the MIDI file kept its old one.
  if (!man.SetTextByID("song", "song_title", id, newTitle)) return kResultRenameDbFail;
  if (!renameFiles) return result;
  if (midi.present() && std::rename(midi.path.c_str(), midi.renamed.c_str()) != 0) {
    result = kResultRenameDbFail;
  }
  if (audio.present() && std::rename(audio.path.c_str(), audio.renamed.c_str()) != 0) {
    return kResultRenameDbFail;
  }
  if (result != kResultOk) return result;
  // Both paths relative to the root, as stored.
  const std::string newMidi = midi.present() ? midi.renamed.substr(root.size()) : "";
  const std::string newAudio = audio.present() ? audio.renamed.substr(root.size()) : "";
  if (!man.SetSongPath(id, newMidi.c_str(), newAudio.c_str())) {
    // The row keeps the old paths: the files go back under them, so that
    // the song is not lost to the catalogue.
    if (midi.present()) std::rename(midi.renamed.c_str(), midi.path.c_str());
    if (audio.present()) std::rename(audio.renamed.c_str(), audio.path.c_str());
    return kResultRenameDbFail;
  }
  return kResultOk;
}

}  // namespace

int FH_rename(const char* root, int id, const char* newTitle, int kind, int renameFiles) {
  zansong::CatalogueSession session(root);
  if (!session.ok()) return kResultRenameDbFail;
  TDBSongMan& man = session.man();
  const char* title = newTitle != nullptr ? newTitle : "";
  const std::string rootText = root;
  if (kind == kKindAlbum) {
    if (!man.SetTextByID("album", "album_title", id, title)) return kResultRenameDbFail;
    const std::string albumPath = man.GetTextByID("album", "album_path", id).c_str();
    // A title file that cannot be written is a failed file step.
    return CreateAlbumTitleFile((rootText + albumPath + "/.zanalbum").c_str(), title)
               ? kResultOk
               : kResultRenameDbFail;
  }
  if (kind == kKindPlaylist) {
    return man.SetTextByID("playlist", "playlist_title", id, title) ? kResultOk
                                                                    : kResultRenameDbFail;
  }
  return RenameSong(man, rootText, id, title, renameFiles != 0);
}
