// TDBSongMan: every read and write of the catalogue tables song, album,
// playlist and psong, and the display-order maintenance.
//
// Each function builds one statement (text with SQLite's quoting, numbers in
// decimal), runs it on the connection that Open() made, and finalizes it
// before returning; none opens or closes the connection.
//
// Prefixes: "p" and "l" are playlist prefixes and select the playlist side
// (table playlist, and psong for the entries of one playlist); any other
// prefix is a song prefix and selects the albums of that prefix (table
// album) or, with a non-zero id, the songs of album id (table song).
//
// Keys: a new row's key is the largest key of its table + 1 (GetMaxInt), so
// an empty table starts at 1.  A new row's disp_order is GetMaxOrder + 1.
//
// Results:
//   single-value reads return 0 (or "") when there is no row;
//   CreateAlbum returns the existing album's id when album_path is already
//     known, else the new id, -1 when the insert fails;
//   CreatePlaylist, AddSong and AddToPlaylist return the new key even when
//     the insert failed (Query has printed "DB: error %s\n");
//   AddSong2, updates, deletes, lists, SetOrder, ReOrder, SortSongByPath and
//     ResetAlbumOrderAndPath return 1, or 0 after printing "Error! :" and a
//     name (no line end);
//   lists append to the caller's list; rows already appended stay.
//   GetSongPathList entries are midi_path TAB audio_path TAB format TAB mtime
//     ("SMF" for a format containing "SOLO" or "KW"; prefix "y" entries end
//     with the tab after the format); GetAlbumPathList2 entries are
//     album_path TAB album_id; GetSongPathList2/3 entries are midi_path TAB
//     audio_path TAB song_id.
//
// Order: a sequence (chosen by id and prefix as above) is sound when its
// disp_order values, read in order, are positive and strictly increasing.
// ChangeOrder(ids, id, prefix, pos) shifts every row at pos or later up by
// ids.size() and gives the listed rows positions pos, pos+1, ...; the holes
// left behind are closed by ReOrder, which renumbers 1, 2, 3, ...
// SortSongByPath numbers all songs of a prefix by (midi_path, audio_path)
// as one run; ResetAlbumOrderAndPath numbers the albums of a prefix by
// album_path.  These two and ReOrder also read the current positions of
// the table and do not write a row that already holds its new position, so
// renumbering a sequence that is in order writes nothing.  Each update commits on its
// own.
#ifndef ZANSONG_DB_DBSONGMAN_H_
#define ZANSONG_DB_DBSONGMAN_H_

#include <list>
#include <string>

#include "zansong/common/tsstring.h"
#include "zansong/db/dbman.h"
#include "zansong/db/songinfo.h"
#include "zansong/export.h"

class ZANSONG_EXPORT TDBSongMan : public TDBMan {
 public:
  // Single values.
  int GetAlbumIDByPath(char const* path);
  int GetIDByTitle(char const* table, char const* title, char const* prefix);
  int GetSongIDByFieldname(char const* field, char const* value, char const* pfix);
  // The song whose MIDI or audio file is albumDir/name.<3-letter extension>
  // ("Single Songs" when albumDir is empty), with mtime equal to the given
  // one, or later than it when newer is true.  0 when none.
  int GetSongIDByFilenameAndMtime(char const* albumDir, char const* name, char const* mtime,
                                  char const* pfix, bool newer);
  TSString GetTextByID(char const* table, char const* field, int id);
  int GetIntByID(char const* table, char const* field, int id);
  int GetMaxInt(char const* table, char const* field);
  int GetAlbumCount(char const* prefix);
  int GetSongCount(int id, char const* prefix);
  // Fills title, midiPath, audioPath, format, mtime, length, syncId,
  // performer, composer, tags and genre.  1 when the song exists.
  int GetSongData(int songId, SongInfo* info);

  // Inserts.
  int CreateAlbum(char const* title, char const* path, char const* coverart, char const* pfix);
  int CreatePlaylist(char const* title, char const* ppfix);
  int AddSong(SongInfo* info, char* ctime, char const* pfix);
  int AddSong2(int albumId, int songId, int dispOrder, SongInfo* info, char* ctime,
               char const* pfix);
  int AddToPlaylist(int playlistId, int songId, char const* ppfix, char const* pfix);

  // Updates and deletes.
  int SetSongData(int songId, SongInfo* info, char* ctime);
  int SetTextByID(char const* table, char const* field, int id, char const* value);
  int SetSongPath(int songId, char const* midiPath, char const* audioPath);
  int DeleteSongByPath(char* midiPath, char* audioPath);
  int DeletePsongByAlbum(int albumId, char const* pfix);
  int DeletePsongNotExist(char const* pfix);
  int DeleteData(char const* table, char const* field, char const* value);
  int DeleteData2(char const* table, char const* field1, char const* value1, char const* field2,
                  char const* value2);

  // Lists.
  int GetIDList(std::list<int>& ids, int id, char const* prefix);
  int GetSongIDList(std::list<int>& ids, int id, bool playlist);
  int GetPSongIDPfixList(std::list<std::string>& pfixes, std::list<int>& songIds, int playlistId);
  int GetAlbumPathList(std::list<std::string>& paths, char const* pfix);
  int GetAlbumPathList2(std::list<std::string>& entries, char const* pfix);
  int GetSongPathList(std::list<std::string>& entries, char const* pfix);
  int GetSongPathList2(std::list<std::string>& entries, char const* pfix);
  int GetSongPathList3(std::list<std::string>& entries, int albumId);

  // Display order.
  int GetMaxOrder(int id, char const* prefix);
  int SetOrder(char const* table, int id, int order);
  int CheckOrder(int id, char const* prefix);
  int ChangeOrder(std::list<int>& ids, int id, char const* prefix, int pos);
  int ReOrder(int id, char const* prefix);
  int SortSongByPath(char const* pfix);
  int ResetAlbumOrderAndPath(char const* root, char const* pfix);
};

#endif  // ZANSONG_DB_DBSONGMAN_H_
