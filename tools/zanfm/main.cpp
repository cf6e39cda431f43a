// zanfm: runs the library's file-manager operations from the command line
// on a device image, the way the instrument's file manager calls them, and
// shows what the library prints.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "zanfm/catalogue_view.h"
#include "zanfm/copy_commands.h"
#include "zanfm/download_command.h"
#include "zanfm/host_paths.h"
#include "zanfm/message_view.h"
#include "zanfm/organise_commands.h"
#include "zanfm/organise_demo.h"
#include "zanfm/programs.h"
#include "zanfm/record_commands.h"
#include "zanfm/sample_library.h"
#include "zansong/async/cancel.h"
#include "zansong/common/sysroot.h"
#include "zansong/db/dbman.h"
#include "zansong/fileman/register.h"
#include "zansong/result_codes.h"

namespace {

struct Options {
  std::string root;
  bool xml = false;
  std::string usb;
  std::string folder;
  bool keepOrder = false;
  bool json = false;
  int album = 0;
  std::string dir;
};

void OnInterrupt(int) { SetCancelFlag(); }

int Fail(const std::string& message) {
  std::cerr << "zanfm: " << message << "\n";
  return 1;
}

std::string Describe(int result) {
  switch (result) {
    case kScanUnreadableDir:
      return "a directory of the storage cannot be read";
    case kScanStopped:
      return "cancelled, or too many albums or songs on the storage";
    case kScanTooManyLooseSongs:
      return "too many songs directly in one directory";
    default:
      return "failed";
  }
}

using zanfm::StorageRoot;

bool LayOutImage(const std::string& dir) {
  return zanfm::RunCommand(
             {zanfm::MakeImageScript(), dir, "--songdb2json", zanfm::Songdb2jsonProgram()}) == 0;
}

int Register(const Options& o, const std::string& usb) {
  std::string root = StorageRoot(usb);
  if (::access(root.c_str(), F_OK) != 0) return Fail("no storage at " + root);
  ClearCancelFlag();
  int result = zanfm::RunShowingMessages(o.xml, [&] {
    if (!usb.empty()) usbdb_copy(&root[0]);
    int r = FM_Add_AllSongs_ByCache(root.c_str(), o.folder.c_str(), 0, o.keepOrder ? 1 : 0, 0);
    usbdb_backup(&root[0]);
    return r;
  });
  if (result != 0) {
    return Fail("registration of " + root + " returned " + std::to_string(result) + ": " +
                Describe(result));
  }
  return 0;
}

int ListAlbums(const Options& o) {
  std::vector<zanfm::AlbumRow> albums;
  std::string db = StorageRoot(o.usb) + ".zansong.db";
  if (!zanfm::ReadAlbums(db, &albums)) return Fail("cannot read the catalogue " + db);
  std::cout << (o.json ? zanfm::AlbumJson(albums) : zanfm::AlbumTable(albums));
  return 0;
}

int ListSongs(const Options& o) {
  std::vector<zanfm::SongRow> songs;
  std::string db = StorageRoot(o.usb) + ".zansong.db";
  if (!zanfm::ReadSongs(db, o.album, &songs)) return Fail("cannot read the catalogue " + db);
  std::cout << (o.json ? zanfm::SongJson(songs) : zanfm::SongTable(songs));
  return 0;
}

std::set<std::string> SongKeys(const std::string& root) {
  std::vector<zanfm::SongRow> songs;
  zanfm::ReadSongs(root + ".zansong.db", 0, &songs);
  std::set<std::string> keys;
  for (const auto& s : songs) keys.insert("#" + std::to_string(s.id) + " " + s.path);
  return keys;
}

int Demo(Options o) {
  std::string dir = o.dir.empty() ? "zanfm-demo" : o.dir;
  std::cout << "== Laying out a device image in " << dir << "\n";
  if (!LayOutImage(dir)) return Fail("cannot lay out the device image in " + dir);
  char real[4096];
  if (::realpath(dir.c_str(), real) == nullptr) return Fail("no directory " + dir);
  FM_SetSystemRoot(real);
  const std::string internal = StorageRoot("");
  const std::string stick = StorageRoot("sda1");
  std::error_code ignored;
  std::filesystem::create_directories(stick, ignored);
  std::cout << "== Writing a sample library to the internal storage and the stick sda1\n";
  if (!zanfm::WriteSampleLibrary(internal, false) || !zanfm::WriteSampleLibrary(stick, true)) {
    return Fail("cannot write the sample library");
  }
  for (const std::string& usb : {std::string(), std::string("sda1")}) {
    std::cout << "== Registering " << StorageRoot(usb) << "\n";
    if (int rc = Register(o, usb)) return rc;
  }
  for (const std::string& usb : {std::string(), std::string("sda1")}) {
    o.usb = usb;
    std::cout << "\n== Albums on " << (usb.empty() ? "the internal storage" : "stick " + usb)
              << "\n";
    ListAlbums(o);
    std::cout << "\n== Songs on " << (usb.empty() ? "the internal storage" : "stick " + usb)
              << "\n";
    ListSongs(o);
  }
  std::cout << "\n== Changing files on the internal storage\n";
  std::set<std::string> before = SongKeys(internal);
  for (const std::string& line : zanfm::ChangeSampleLibrary(internal)) {
    std::cout << "   " << line << "\n";
  }
  std::cout << "== Registering again: only the differences are written\n";
  if (int rc = Register(o, "")) return rc;
  std::set<std::string> after = SongKeys(internal);
  for (const auto& k : before) {
    if (!after.count(k)) std::cout << "   unregistered " << k << "\n";
  }
  for (const auto& k : after) {
    if (!before.count(k)) std::cout << "   registered   " << k << "\n";
  }
  std::cout << "\n";
  if (int rc = zanfm::DemoDownloads(o.xml)) return rc;
  // usbdb_backup writes the export for a stick only, so it holds the
  // catalogue of the stick registered last.
  if (!zanfm::DemoOrganising(internal, o.xml)) return 1;
  if (zanfm::DemoRecording(o.xml) != 0) return 1;
  std::cout << "\nJSON export of the stick's catalogue, as the web page reads it: "
            << zanfm::JsonExportPath() << "\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  Options o;
  CLI::App app{
      "zanfm: runs the song-file manager library on a device image, as the instrument's file "
      "manager does, and shows its messages."};
  app.require_subcommand(1);
  app.add_option("--root", o.root, "device image directory (the library's system root)");
  app.add_flag("--xml", o.xml, "show the library's raw XML message lines");

  CLI::App* image = app.add_subcommand("image", "lay out a device image in DIR");
  image->add_option("DIR", o.dir, "directory of the new image")->required();

  CLI::App* reg = app.add_subcommand(
      "register", "bring the catalogue of the internal storage or a stick in step with its files");
  reg->add_option("--usb", o.usb, "register the stick NAME (e.g. sda1) instead")
      ->expected(0, 1)
      ->default_str("sda1");
  reg->add_option("--folder", o.folder,
                  "category folder (\"Recorded Songs\", \"Downloaded Songs\", \"FromToPC\")");
  reg->add_flag("--keep-order", o.keepOrder, "keep the display order instead of sorting by path");

  CLI::App* albums = app.add_subcommand("albums", "list the albums in display order");
  CLI::App* songs = app.add_subcommand("songs", "list the songs in display order");
  for (CLI::App* list : {albums, songs}) {
    list->add_option("--usb", o.usb, "list the stick NAME (e.g. sda1)");
    list->add_flag("--json", o.json, "print JSON instead of a table");
  }
  songs->add_option("--album", o.album, "only the songs of album ID");
  zanfm::OrganiseCommands organise(app, songs, &o.usb);

  CLI::App* demo = app.add_subcommand(
      "demo",
      "lay out an image in DIR (default ./zanfm-demo), fill it with a sample library, register, "
      "list, change files and register again, then make a playlist, rename a song with its "
      "files, delete an album and a song in one request, record a short performance and keep it");
  demo->add_option("DIR", o.dir, "directory of the demo image");
  zanfm::DownloadCommands downloads(app);
  zanfm::CopyCommands copy(app);
  zanfm::RecordCommands record(app);

  CLI11_PARSE(app, argc, argv);
  std::signal(SIGINT, OnInterrupt);

  if (*image) {
    if (!LayOutImage(o.dir)) return Fail("cannot lay out the device image in " + o.dir);
    std::cout << "Device image laid out in " << o.dir << "\n";
    return 0;
  }
  if (*demo) return Demo(o);
  if (o.root.empty()) return Fail("--root DIR is required (the device image)");
  if (::access(o.root.c_str(), F_OK) != 0) return Fail("no device image at " + o.root);
  FM_SetSystemRoot(o.root.c_str());
  if (downloads.chosen()) return downloads.Run(o.xml);
  if (*reg) {
    if (reg->count("--usb") > 0 && o.usb.empty()) o.usb = "sda1";
    return Register(o, o.usb);
  }
  if (copy.Chosen()) return copy.Run(o.xml);
  if (record.Chosen()) return record.Run(o.xml);
  if (organise.Chosen()) return organise.Run(o.xml);
  if (*albums) return ListAlbums(o);
  return ListSongs(o);
}
