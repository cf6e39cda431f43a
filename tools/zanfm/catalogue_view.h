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

// "m:ss" of a playing time in milliseconds.
std::string MinutesSeconds(int ms);
std::string AlbumTable(const std::vector<AlbumRow>& albums);
std::string SongTable(const std::vector<SongRow>& songs);
std::string AlbumJson(const std::vector<AlbumRow>& albums);
std::string SongJson(const std::vector<SongRow>& songs);

}  // namespace zanfm

#endif  // ZANFM_CATALOGUE_VIEW_H_
