// The record, keep and forget-recording commands of zanfm.
#include "zanfm/record_commands.h"

#include <filesystem>
#include <iostream>
#include <vector>

#include "samplefiles/midi_writer.h"
#include "zanfm/catalogue_view.h"
#include "zanfm/host_paths.h"
#include "zanfm/storage_call.h"
#include "zansong/common/sysroot.h"
#include "zansong/fileman/recorded.h"
#include "zansong/result_codes.h"

namespace zanfm {
namespace {

namespace fs = std::filesystem;

// FM_Add_RecSong's own failures, as the messages the user sees.
int AsResultCode(int recorded) {
  if (recorded > 0) return kResultOk;
  if (recorded == -1) return kResultDbFail;
  return kResultWriteProtected;
}

// Copies file (and a MIDI file of the same name beside an audio file) to
// the recorder's hand-over directory of the image; the copy's path, "" on
// failure.
std::string HandOver(const std::string& file) {
  const fs::path source(file);
  const fs::path handover = fs::path(FM_GetSystemRoot()) / "tmp" / "recorder";
  std::error_code error;
  fs::create_directories(handover, error);
  if (!fs::copy_file(source, handover / source.filename(), fs::copy_options::overwrite_existing,
                     error)) {
    return "";
  }
  for (const char* midi : {".mid", ".MID"}) {
    fs::path beside = source;
    beside.replace_extension(midi);
    if (beside != source && fs::exists(beside)) {
      fs::copy_file(beside, handover / beside.filename(), fs::copy_options::overwrite_existing,
                    error);
    }
  }
  return (handover / source.filename()).string();
}

int Record(bool xml, const std::string& file, const std::string& usb, int* songId) {
  const std::string handed = HandOver(file);
  if (handed.empty()) {
    std::cerr << "zanfm: cannot read " << file << "\n";
    return 1;
  }
  int result = kResultOk;
  int status = RunOnStorage(
      xml, usb, kLabelRecord, false,
      [&](const std::string& root) {
        char prefix[2] = "";
        *songId = FM_Add_RecSong(root.c_str(), handed.c_str(), prefix);
        return AsResultCode(*songId);
      },
      &result);
  if (status == 0) std::cout << "Recorded as song #" << *songId << "\n";
  return status;
}

// Lists the songs of the keep album of the catalogue file db.
void ShowKeptSongs(const std::string& db) {
  std::vector<AlbumRow> albums;
  ReadAlbums(db, &albums);
  for (const AlbumRow& album : albums) {
    if (album.path != "Recorded Songs/Keep") continue;
    std::vector<SongRow> songs;
    ReadSongs(db, album.id, &songs);
    std::cout << SongTable(songs);
  }
}

int Keep(bool xml, int song, const std::string& title, const std::string& usb) {
  int result = kResultOk;
  return RunOnStorage(
      xml, usb, kLabelRecord, false,
      [&](const std::string& root) { return FM_MoveToKeep(root.c_str(), song, title.c_str()); },
      &result);
}

}  // namespace

RecordCommands::RecordCommands(CLI::App& app) {
  record_ = app.add_subcommand("record",
                               "file a recording (MIDI, or WAV/MP3 with an optional "
                               "MIDI file beside it)");
  record_->add_option("FILE", file_, "the recorded file")->required();
  keep_ = app.add_subcommand("keep", "rename a recording and move it to \"Recorded Songs/Keep\"");
  keep_->add_option("SONG", song_, "catalogue id of the recording")->required();
  keep_->add_option("TITLE", title_, "its new title")->required();
  for (CLI::App* command : {record_, keep_}) {
    command->add_option("--usb", usb_, "work on the stick NAME (e.g. sda1)");
  }
  forget_ = app.add_subcommand("forget-recording", "delete the internal recording");
}

bool RecordCommands::Chosen() const {
  return record_->parsed() || keep_->parsed() || forget_->parsed();
}

int RecordCommands::Run(bool xml) {
  if (record_->parsed()) {
    int songId = 0;
    return Record(xml, file_, usb_, &songId);
  }
  if (keep_->parsed()) return Keep(xml, song_, title_, usb_);
  int result = kResultOk;
  return RunOnStorage(
      xml, "", kLabelRecord, false,
      [](const std::string&) {
        FM_Delete_InternalRecord();
        return kResultOk;
      },
      &result);
}

int DemoRecording(bool xml) {
  samplefiles::MidiTrack track;
  track.TrackName(0, "Evening Practice").Tempo(0, 500000);
  for (int key : {60, 64, 67, 72}) track.NoteOn(0, 0, key, 80).NoteOff(480, 0, key);
  track.EndOfTrack();
  const fs::path take = fs::path(FM_GetSystemRoot()) / "tmp" / "performance.mid";
  const std::vector<samplefiles::MidiTrack> tracks{track};
  if (!samplefiles::SaveBytes(take.string(),
                              samplefiles::BuildSmf(samplefiles::SmfOptions(), tracks))) {
    std::cerr << "zanfm: cannot write " << take << "\n";
    return 1;
  }
  std::cout << "== Recording a short MIDI performance on the internal storage\n";
  int songId = 0;
  if (int rc = Record(xml, take.string(), "", &songId)) return rc;
  std::cout << "== Keeping it as \"Evening Practice (kept)\"\n";
  if (int rc = Keep(xml, songId, "Evening Practice (kept)", "")) return rc;
  ShowKeptSongs(StorageRoot("") + ".zansong.db");
  return 0;
}

}  // namespace zanfm
