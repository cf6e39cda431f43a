// Private: the two forms of the song insert, side by side so that they name
// the same columns in the same order: the text that AddSong and AddSong2
// fill with sqlite3_mprintf, and the statement with parameters that
// SongInsert compiles once.
#ifndef ZANSONG_SRC_DB_SONG_INSERT_SQL_H_
#define ZANSONG_SRC_DB_SONG_INSERT_SQL_H_

namespace zansong {

constexpr char kSongInsertText[] =
    "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,format,length,"
    "ctime,mtime,album_id,sync_id,composer,genre,purchased_date,coverart_path) "
    "VALUES('%q',%d,'%q','%q','%q',%d,'%q',%d,'%q','%q',%d,'%q','%q','%q','%q','%q')";

constexpr char kSongInsertCompiled[] =
    "INSERT INTO song(pfix,song_id,song_title,midi_path,audio_path,disp_order,format,length,"
    "ctime,mtime,album_id,sync_id,composer,genre,purchased_date,coverart_path) "
    "VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,?15,?16)";

}  // namespace zansong

#endif  // ZANSONG_SRC_DB_SONG_INSERT_SQL_H_
