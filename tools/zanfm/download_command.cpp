#include "zanfm/download_command.h"

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>

#include "samplefiles/midi_writer.h"
#include "samplefiles/package_writer.h"
#include "zanfm/catalogue_view.h"
#include "zanfm/host_paths.h"
#include "zanfm/message_view.h"
#include "zanfm/sample_library.h"
#include "zansong/common/sysroot.h"
#include "zansong/fileman/download.h"
#include "zansong/storage/package.h"

namespace zanfm {

namespace {

namespace fs = std::filesystem;

int Fail(const std::string& message) {
  std::cerr << "zanfm: " << message << "\n";
  return 1;
}

std::string UpperExtension(const std::string& path) {
  std::string ext = fs::path(path).extension().string();
  std::transform(ext.begin(), ext.end(), ext.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return ext;
}

// Copies text into a record field; false when it does not fit.
template <size_t N>
bool Put(char (&field)[N], const std::string& text) {
  if (text.size() >= N) return false;
  std::memcpy(field, text.c_str(), text.size() + 1);
  return true;
}

// The modification time of path as fixed-width text that sorts as time.
std::string ModifyTimeText(const std::string& path) {
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) return "";
  struct tm local;
  char text[32] = "";
  if (::localtime_r(&st.st_mtime, &local) != nullptr) {
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  }
  return text;
}

// A directory of the image's tmp folder, removed with everything in it
// when the object goes.
class DownloadFolder {
 public:
  DownloadFolder() {
    std::string pattern = std::string(FM_GetSystemRoot()) + "/tmp/zanfm-download-XXXXXX";
    if (::mkdtemp(&pattern[0]) != nullptr) path_ = pattern + "/";
  }
  ~DownloadFolder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
  }
  DownloadFolder(const DownloadFolder&) = delete;
  DownloadFolder& operator=(const DownloadFolder&) = delete;
  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// The file decoded out of the package copied into folder; "" when neither
// decoder could read it.
std::string Decode(const std::string& package, const std::string& folder) {
  std::string copy = folder + fs::path(package).filename().string();
  std::error_code error;
  if (!fs::copy_file(package, copy, fs::copy_options::overwrite_existing, error)) return "";
  char name[1024] = "";
  FM_ChangeB64ToBin2(copy.c_str(), name, sizeof name - 1, nullptr, 0);
  if (name[0] == '\0') FM_ChangeB64ToBin(copy.c_str(), name, sizeof name - 1);
  return name;
}

// Fills the record's sources from the decoded files; "" or what is wrong.
std::string SortFiles(const std::vector<std::string>& files, DownloadRecord* rec) {
  for (const std::string& file : files) {
    const std::string ext = UpperExtension(file);
    char* field = nullptr;
    if (ext == ".MID") field = rec->midiSource;
    if (ext == ".WAV" || ext == ".MP3") field = rec->audioSource;
    if (ext == ".JPG" || ext == ".JPEG") field = rec->coverSource;
    if (field == nullptr) return "the package file " + file + " is no song file or cover";
    if (field[0] != '\0') return "two packages hold the same kind of file: " + file;
    if (file.size() >= sizeof rec->midiSource) return "path too long: " + file;
    std::memcpy(field, file.c_str(), file.size() + 1);
  }
  if (rec->midiSource[0] == '\0' && rec->audioSource[0] == '\0') {
    return "the packages hold no MIDI or audio file";
  }
  return "";
}

// The record's texts from the options; "" or what does not fit.
std::string FillTexts(const DownloadOptions& o, DownloadRecord* rec) {
  if (!Put(rec->albumDir, o.albumDir)) return "--album-dir is longer than 31 bytes";
  if (!Put(rec->albumTitle, o.albumTitle)) return "--album-title is too long";
  if (!Put(rec->songTitle, o.title)) return "--title is too long";
  if (!Put(rec->composer, o.composer)) return "--composer is too long";
  if (!Put(rec->genre, o.genre)) return "--genre is too long";
  if (!Put(rec->purchaseDate, o.purchased)) return "--purchased is longer than 31 bytes";
  const char* song = rec->midiSource[0] != '\0' ? rec->midiSource : rec->audioSource;
  Put(rec->mtime, ModifyTimeText(song));
  return "";
}

void ShowMessageLine(const std::string& line, bool xml) {
  if (xml) {
    std::cout << line << std::flush;
    return;
  }
  bool progress = false;
  std::string text = RenderLine(line.substr(0, line.find('\n')), &progress);
  if (!text.empty()) std::cout << text << "\n";
}

bool WritePackageOf(const std::string& folder, const std::string& fileName,
                    const std::function<bool(const std::string&)>& write) {
  const std::string scratch = folder + "scratch-" + fileName;
  bool ok = write(scratch);
  std::string bytes;
  if (ok) {
    std::ifstream in(scratch, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  std::error_code ignored;
  fs::remove(scratch, ignored);
  return ok && samplefiles::WritePackage(folder + fileName + ".xml", fileName, bytes);
}

}  // namespace

DownloadCommands::DownloadCommands(CLI::App& app) {
  download_ = app.add_subcommand(
      "download",
      "decode song packages and file the song into \"Downloaded Songs\" as a purchase is filed");
  download_->add_option("PACKAGE", options_.packages, "package files (MIDI, audio, cover)")
      ->required();
  download_->add_option("--album-dir", options_.albumDir,
                        "album directory below \"Downloaded Songs\" (none: a single song)");
  download_->add_option("--album-title", options_.albumTitle, "title of the album");
  download_->add_option("--title", options_.title, "song title (default: the MIDI title)");
  download_->add_option("--composer", options_.composer, "composer");
  download_->add_option("--genre", options_.genre, "genre");
  download_->add_option("--purchased", options_.purchased, "purchase date");
  download_->add_option("--usb", options_.usb, "file onto the stick NAME (e.g. sda1)");

  downloaded_ = app.add_subcommand("downloaded", "list the \"Downloaded Songs\" area");
  downloaded_->add_option("--usb", options_.usb, "list the stick NAME (e.g. sda1)");
  downloaded_->add_flag("--json", options_.json, "print JSON instead of tables");
}

int DownloadCommands::Run(bool xml) const {
  if (*downloaded_) return ListDownloaded(options_.usb, options_.json);
  return FileDownload(options_, xml);
}

int FileDownload(const DownloadOptions& o, bool xml) {
  const std::string root = StorageRoot(o.usb);
  if (::access(root.c_str(), F_OK) != 0) return Fail("no storage at " + root);
  DownloadFolder folder;
  if (folder.path().empty()) return Fail("cannot make a download folder in the image");
  std::vector<std::string> files;
  for (const std::string& package : o.packages) {
    std::string file = Decode(package, folder.path());
    if (file.empty()) return Fail("cannot decode the package " + package);
    files.push_back(file);
  }
  DownloadRecord rec;
  std::memset(&rec, 0, sizeof rec);
  std::string wrong = SortFiles(files, &rec);
  if (wrong.empty()) wrong = FillTexts(o, &rec);
  if (!wrong.empty()) return Fail(wrong);

  char line[4096] = "";
  int result = RunShowingMessages(xml, [&] { return FM_Copy_UlqSong(root.c_str(), &rec, line); });
  ShowMessageLine(line, xml);
  if (result != 0) return Fail("the song was not filed (result " + std::to_string(result) + ")");
  std::cout << "Filed into Downloaded Songs/"
            << (o.albumDir.empty() ? std::string("Single Songs") : o.albumDir) << " on "
            << (o.usb.empty() ? "the internal storage" : "stick " + o.usb) << "\n";
  return 0;
}

int ListDownloaded(const std::string& usb, bool json) {
  const std::string db = StorageRoot(usb) + ".zansong.db";
  std::vector<AlbumRow> albums;
  std::vector<SongRow> songs;
  if (!ReadAlbums(db, &albums) || !ReadSongs(db, 0, &songs)) {
    return Fail("cannot read the catalogue " + db);
  }
  nlohmann::json out = nlohmann::json::array();
  for (const AlbumRow& a : albums) {
    if (a.prefix != "y") continue;
    std::vector<SongRow> own;
    for (const SongRow& s : songs) {
      if (s.albumId == a.id) own.push_back(s);
    }
    if (!json) {
      std::cout << a.title << "  (" << a.path << ")\n" << SongTable(own) << "\n";
      continue;
    }
    nlohmann::json list = nlohmann::json::parse(SongJson(own));
    out.push_back({{"id", a.id}, {"title", a.title}, {"path", a.path}, {"songs", list}});
  }
  if (json) std::cout << out.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
  return 0;
}

int DemoDownloads(bool xml) {
  const std::string folder = std::string(FM_GetSystemRoot()) + "/tmp/demo-packages/";
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  const bool written =
      WritePackageOf(folder, "moonlight.mid",
                     [](const std::string& p) { return WriteSampleMidi(p, "Moonlight", 6); }) &&
      WritePackageOf(folder, "moonlight.wav",
                     [](const std::string& p) { return WriteSampleWav(p, 14); }) &&
      WritePackageOf(folder, "sonatas.jpg",
                     [](const std::string& p) {
                       return samplefiles::SaveBytes(p, "\xFF\xD8\xFF\xE0 sonatas cover");
                     }) &&
      WritePackageOf(folder, "encore.mid",
                     [](const std::string& p) { return WriteSampleMidi(p, "Encore", 3); });
  if (!written) return Fail("cannot write the demo packages in " + folder);

  DownloadOptions album;
  album.packages = {folder + "moonlight.mid.xml", folder + "moonlight.wav.xml",
                    folder + "sonatas.jpg.xml"};
  album.albumDir = "sonatas-0001";
  album.albumTitle = "Piano Sonatas";
  album.title = "Moonlight Sonata (download)";
  album.composer = "L. van Beethoven";
  album.genre = "Classical";
  album.purchased = "2026-11-20";
  std::cout << "== Filing a downloaded album song from its packages\n";
  if (FileDownload(album, xml) != 0) return 1;

  DownloadOptions single;
  single.packages = {folder + "encore.mid.xml"};
  single.purchased = "2026-11-21";
  std::cout << "== Filing a downloaded single song (title from the MIDI file)\n";
  if (FileDownload(single, xml) != 0) return 1;
  fs::remove_all(folder, ignored);

  std::cout << "\n== Downloaded Songs on the internal storage\n";
  return ListDownloaded("", false);
}

}  // namespace zanfm
