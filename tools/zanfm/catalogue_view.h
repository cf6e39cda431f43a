// Reading a storage's catalogue for display: albums and songs in display
// order, as an aligned table or as JSON.
#ifndef ZANFM_CATALOGUE_VIEW_H_
#define ZANFM_CATALOGUE_VIEW_H_

#include <string>
#include <vector>

namespace zanfm {

struct SongRow {
  int id = 0;
  int albumId = 0;
  std::string title, format, path;
  int lengthMs = 0;
  int entryId = 0;  // the playlist entry (psong_id) when read from a playlist
};

struct PlaylistRow {
  int id = 0;
  std::string title, prefix;
  int entries = 0;
};

struct AlbumRow {
  int id = 0;
  std::string title, path, prefix;
  int songs = 0;
};

// The albums of the catalogue file db (all prefixes), in display order.
// False when the catalogue cannot be read.
bool ReadAlbums(const std::string& db, std::vector<AlbumRow>* albums);
// The songs of album albumId (all songs when 0), by album then display
// order.
bool ReadSongs(const std::string& db, int albumId, std::vector<SongRow>* songs);

// The entries of playlist playlistId in display order, each with its song
// (title, format and path empty when the song is not in this catalogue).
bool ReadPlaylistSongs(const std::string& db, int playlistId, std::vector<SongRow>* songs);
// The playlists in display order.
bool ReadPlaylists(const std::string& db, std::vector<PlaylistRow>* playlists);
// The pfix (ppfix for table playlist) of row id of table album, song,
// playlist or psong; "" when there is no such row or no readable catalogue.
std::string PrefixOf(const std::string& db, const std::string& table, int id);

// "m:ss" of a playing time in milliseconds.
std::string MinutesSeconds(int ms);
std::string AlbumTable(const std::vector<AlbumRow>& albums);
std::string SongTable(const std::vector<SongRow>& songs);
std::string PlaylistTable(const std::vector<PlaylistRow>& playlists);
std::string PlaylistJson(const std::vector<PlaylistRow>& playlists);
std::string AlbumJson(const std::vector<AlbumRow>& albums);
std::string SongJson(const std::vector<SongRow>& songs);

}  // namespace zanfm

#endif  // ZANFM_CATALOGUE_VIEW_H_
