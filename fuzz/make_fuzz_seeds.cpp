// Writes the seed corpora of the fuzz targets, one directory per target
// under the directory given, using the test-support file writers.
//   make_fuzz_seeds DIR
#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

#include "samplefiles/midi_writer.h"
#include "samplefiles/mp3_writer.h"
#include "samplefiles/wav_writer.h"

using namespace samplefiles;

namespace {

std::vector<std::string> MidiSeeds() {
  std::vector<std::string> seeds;
  MidiTrack conductor;
  conductor.TrackName(0, "Seed song").Notice(0, "(c)").Text(0, "text").Tempo(0, 500000);
  conductor.PartChannels(0, 1, 2).LongTitle(0, 1, "\x01Long title").Tempo(960, 400000);
  conductor.SongId(0, std::string(16, '\x5A')).TitleSysEx(0, "\x1E\x41Title").EndOfTrack(0);
  MidiTrack notes;
  notes.SetRunningStatus(true);
  for (int i = 0; i < 20; ++i) notes.NoteOn(60, i % 3, 60 + i, 90).NoteOn(30, i % 3, 60 + i, 0);
  notes.SysEx(0, "\x41\x10\xF7").SysExEscape(0, "\xF8").Program(0, 9, 1).PitchBend(5, 9, 0, 64);
  notes.Raw(std::string("\x00\xF2\xF2\x00", 4)).Meta(10, 0x06, std::string(130, 'm'), 3);
  notes.EndOfTrack(0);
  seeds.push_back(BuildSmf(SmfOptions{0, 480, false, -1}, std::vector<MidiTrack>{conductor}));
  seeds.push_back(BuildSmf(SmfOptions{1, 96, false, -1}, std::vector<MidiTrack>{conductor, notes}));
  seeds.push_back(BuildSmf(SmfOptions{1, 480, true, -1}, std::vector<MidiTrack>{notes, conductor}));
  MidiTrack longTrack;
  longTrack.Text(0, std::string(1100, 't')).EndOfTrack(0);
  seeds.push_back(
      BuildSmf(SmfOptions{1, 480, false, -1}, std::vector<MidiTrack>{longTrack, notes, notes}));
  return seeds;
}

std::vector<std::string> WavSeeds() {
  std::vector<std::string> seeds;
  for (int fmtSize : {16, 18, 40}) {
    WavSpec wav;
    wav.fmtSize = fmtSize;
    wav.dataBytes = 64;
    wav.chunksBeforeFmt.push_back(ListInfoChunk("seed"));
    seeds.push_back(BuildWav(wav));
  }
  WavSpec noData;
  noData.withData = false;
  seeds.push_back(BuildWav(noData));
  return seeds;
}

std::vector<std::string> Mp3Seeds() {
  std::vector<std::string> seeds;
  Id3v1Tag tag{"Title", "Artist", "Album", "2001", "Comment", 17};
  Mp3Frame mpeg2;
  mpeg2.mpeg1 = false;
  mpeg2.layer = 2;
  mpeg2.bitrateIndex = 5;
  seeds.push_back(BuildMp3(Mp3Frame{}, 600, &tag));
  seeds.push_back(BuildMp3(mpeg2, 300, nullptr));
  return seeds;
}

std::vector<std::string> PsongSeeds() {
  std::string file = "PSONG   MNG   \r\nDISK\r\nFILE002\r\n";
  file += std::string(38, 'h') + "\r\n" + std::string(38, 'h') + "\r\n";
  file += "SONG0001MID\r\n  A   title" + std::string(30, ' ') + "\r\n1234567ABCDEFG\r\n";
  file += "        SMF1  \r\n5\r\n6\r\n7\r\n8\r\n";
  file += "SONG0002   \r\nshort\r\nx\r\n        KTVA  \r\n5\r\n6\r\n7\r\n8\r\n";
  return {file, file.substr(0, file.size() - 20)};
}

// Downloaded packages: the XML form with its base64 text over lines, the
// line form, a name with a directory part, and an escaped package.
std::vector<std::string> PackageSeeds() {
  const std::string base64 = "TVRoZAAAAAYAAAABAeBNVHJrAAAABAD/LwA=";
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<SELF>\r\n"
      "  <file filename=\"song.mid\" ackurl=\"https://shop.example/ack\">\r\n"
      "    " +
      base64.substr(0, 20) + "\r\n    " + base64.substr(20) + "\r\n  </file>\r\n</SELF>\r\n";
  const std::string self = "<SELF>\n<title>Song</title>\n<file filename=\"a b.mid\">\n" + base64 +
                           "\n</file>\n</SELF>\n";
  const std::string nested = "<self><FILE FileName=\"sub/x.mid\" AckURL=\"x\">" + base64 +
                             "</FILE><file filename=\"../up.mid\">QQ==</file></self>";
  const std::string escaped =
      "\"<?xml version=\\\"1.0\\\"?>\\n<SELF><file filename=\\\"e.mid\\\">" + base64 +
      "</file></SELF>\"";
  return {xml, self, nested, escaped};
}

// Text for the string functions: two ints (position, count), then text
// with Shift-JIS characters (one whose second byte is a backslash), CSV
// quoting, tabs and line ends.
std::vector<std::string> TextSeeds() {
  const std::string ints("\x03\0\0\0\x05\0\0\0", 8);
  return {ints + "Album/\x83\x5c\x83\x74\x83\x67.mid", ints + "\"a,b\",c\td\\e\r\n'quoted'",
          ints + "\x82\xa0\x82\xa2 \xe3\x81\x82 plain.MID"};
}

bool WriteSeeds(const std::string& dir, const std::string& target,
                const std::vector<std::string>& seeds) {
  std::string targetDir = dir + "/" + target;
  mkdir(targetDir.c_str(), 0777);
  for (size_t i = 0; i < seeds.size(); ++i) {
    if (!SaveBytes(targetDir + "/seed" + std::to_string(i), seeds[i])) return false;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s DIR\n", argv[0]);
    return 2;
  }
  std::string dir = argv[1];
  mkdir(dir.c_str(), 0777);
  std::vector<std::string> titleSeeds;
  for (const std::string& seed : MidiSeeds()) {
    titleSeeds.push_back(std::string(1, static_cast<char>(titleSeeds.size())) + seed);
  }
  bool ok = WriteSeeds(dir, "smf_info_fuzzer", MidiSeeds()) &&
            WriteSeeds(dir, "smf_title_fuzzer", titleSeeds) &&
            WriteSeeds(dir, "wave_fuzzer", WavSeeds()) &&
            WriteSeeds(dir, "mp3_fuzzer", Mp3Seeds()) &&
            WriteSeeds(dir, "psong_fuzzer", PsongSeeds()) &&
            WriteSeeds(dir, "package_fuzzer", PackageSeeds()) &&
            WriteSeeds(dir, "text_fuzzer", TextSeeds());
  if (!ok) {
    std::fprintf(stderr, "cannot write seeds under %s\n", dir.c_str());
    return 1;
  }
  return 0;
}
