-- Schema of a song catalogue (".zansong.db" in each storage root).
-- Keys and display orders are computed by the library (largest + 1);
-- the indexes serve its lookups by album, prefix and path.
-- One transaction: the file is written and synced once, not once for each
-- statement.
BEGIN;
CREATE TABLE IF NOT EXISTS album (
  pfix TEXT,
  album_id INTEGER PRIMARY KEY,
  album_title TEXT,
  album_path TEXT,
  disp_order INTEGER,
  coverart_path TEXT,
  purchased_date TEXT
);
CREATE TABLE IF NOT EXISTS song (
  pfix TEXT,
  song_id INTEGER PRIMARY KEY,
  song_title TEXT,
  midi_path TEXT,
  audio_path TEXT,
  disp_order INTEGER,
  format TEXT,
  length INTEGER,
  ctime TEXT,
  mtime TEXT,
  album_id INTEGER,
  sync_id TEXT,
  performer TEXT,
  composer TEXT,
  tags TEXT,
  md5 TEXT,
  genre TEXT,
  coverart_path TEXT,
  purchased_date TEXT
);
CREATE TABLE IF NOT EXISTS playlist (
  ppfix TEXT,
  playlist_id INTEGER PRIMARY KEY,
  playlist_title TEXT,
  disp_order INTEGER
);
CREATE TABLE IF NOT EXISTS psong (
  ppfix TEXT,
  psong_id INTEGER PRIMARY KEY,
  playlist_id INTEGER,
  pfix TEXT,
  song_id INTEGER,
  disp_order INTEGER
);
CREATE INDEX IF NOT EXISTS album_by_pfix ON album(pfix);
CREATE INDEX IF NOT EXISTS album_by_path ON album(album_path);
CREATE INDEX IF NOT EXISTS song_by_album ON song(album_id);
CREATE INDEX IF NOT EXISTS song_by_pfix ON song(pfix);
CREATE INDEX IF NOT EXISTS song_by_midi_path ON song(midi_path);
CREATE INDEX IF NOT EXISTS psong_by_playlist ON psong(playlist_id, disp_order);
CREATE INDEX IF NOT EXISTS psong_by_song ON psong(song_id);
COMMIT;
