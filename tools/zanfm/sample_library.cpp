#include "zanfm/sample_library.h"

#include <sys/stat.h>
#include <utime.h>

#include <cstdio>
#include <ctime>

#include "samplefiles/midi_writer.h"
#include "samplefiles/mp3_writer.h"
#include "samplefiles/wav_writer.h"
#include "zansong/common/charset.h"

namespace zanfm {

namespace {

using samplefiles::MidiTrack;

bool MakeDir(const std::string& path) {
  return ::mkdir(path.c_str(), 0777) == 0 || errno == EEXIST;
}

bool WriteMp3(const std::string& path) {
  samplefiles::Id3v1Tag tag;
  tag.title = "Sample";
  return samplefiles::WriteMp3File(path, samplefiles::Mp3Frame(), 16000, &tag);
}

bool WriteText(const std::string& path, const std::string& text) {
  return samplefiles::SaveBytes(path, text);
}

}  // namespace

bool WriteSampleMidi(const std::string& path, const std::string& title, int bars) {
  MidiTrack conductor;
  conductor.TrackName(0, StringConv(title.c_str(), "UTF-8", "SHIFT-JIS").c_str());
  conductor.Tempo(0, 500000).Tempo(480u * 2u * static_cast<uint32_t>(bars), 400000);
  conductor.EndOfTrack(480u * 2u * static_cast<uint32_t>(bars));
  MidiTrack piano;
  for (int i = 0; i < bars * 4; ++i) {
    piano.NoteOn(0, 0, 60 + (i * 2) % 12, 80).NoteOff(480, 0, 60 + (i * 2) % 12);
  }
  piano.EndOfTrack();
  return samplefiles::SaveBytes(
      path,
      samplefiles::BuildSmf(samplefiles::SmfOptions(), std::vector<MidiTrack>{conductor, piano}));
}

bool WriteSampleWav(const std::string& path, int seconds) {
  samplefiles::WavSpec wav;
  wav.channels = 1;
  wav.sampleRate = 8000;
  wav.bitsPerSample = 8;
  wav.dataBytes = static_cast<uint32_t>(seconds * 8000);
  return samplefiles::WriteWavFile(path, wav);
}

bool WriteSampleLibrary(const std::string& root, bool stick) {
  bool ok = true;
  if (stick) {
    ok &= MakeDir(root + "Party Mix");
    ok &= WriteSampleMidi(root + "Party Mix/01 Sunny Waltz.mid", "Sunny Waltz", 4);
    ok &= WriteSampleMidi(root + "Party Mix/02 Hanami.mid", "花見の歌", 3);
    ok &= WriteMp3(root + "Party Mix/03 Applause.mp3");
    ok &= WriteSampleMidi(root + "Stick Loose Song.mid", "Stick Loose Song", 2);
    return ok;
  }
  ok &= MakeDir(root + "Classics");
  ok &= WriteSampleMidi(root + "Classics/01 Moonlight.mid", "Moonlight Sonata", 8);
  ok &= WriteSampleMidi(root + "Classics/02 Minuet.mid", "Minuet in G", 6);
  ok &= WriteSampleMidi(root + "Classics/03 Nocturne.mid", "Nocturne", 5);
  ok &= MakeDir(root + "Japanese Songs");
  ok &= WriteSampleMidi(root + "Japanese Songs/01 sakura.mid", "さくらさくら", 4);
  ok &= WriteSampleMidi(root + "Japanese Songs/02 furusato.mid", "ふるさと", 4);
  ok &= MakeDir(root + "With Audio");
  ok &= WriteSampleMidi(root + "With Audio/01 Jazz Trio.mid", "Jazz Trio", 4);
  ok &= WriteSampleWav(root + "With Audio/01 Jazz Trio.wav", 12);
  ok &= WriteSampleWav(root + "With Audio/02 Rain.wav", 5);
  ok &= WriteMp3(root + "With Audio/03 Bossa.mp3");
  ok &= MakeDir(root + "album-0042");
  ok &= WriteText(root + "album-0042/.zanalbum", "Holiday Favourites");
  ok &= WriteSampleMidi(root + "album-0042/01 Carol.mid", "Winter Carol", 3);
  ok &= WriteSampleMidi(root + "Loose Song.mid", "Loose Song", 2);
  return ok;
}

std::vector<std::string> ChangeSampleLibrary(const std::string& root) {
  std::vector<std::string> done;
  if (WriteSampleMidi(root + "Classics/04 Prelude.mid", "Prelude in C", 4)) {
    done.push_back("added    Classics/04 Prelude.mid");
  }
  struct utimbuf later;
  later.actime = later.modtime = std::time(nullptr) + 60;
  if (::utime((root + "Classics/02 Minuet.mid").c_str(), &later) == 0) {
    done.push_back("touched  Classics/02 Minuet.mid");
  }
  if (std::remove((root + "Classics/03 Nocturne.mid").c_str()) == 0) {
    done.push_back("removed  Classics/03 Nocturne.mid");
  }
  return done;
}

}  // namespace zanfm
