// zanfm's recording commands:
//   record FILE [--usb NAME]   files a recording as the recorder hands it
//                              over: FILE (a MIDI file, or a WAV or MP3 file
//                              with possibly a MIDI file of the same name
//                              beside it) is copied to the image's "/tmp/"
//                              and filed from there, so FILE itself stays
//   keep SONG TITLE [--usb NAME]  renames a recording and moves it to
//                              "Recorded Songs/Keep"
//   forget-recording           deletes the internal recording
// and the demo's recording step.
#ifndef ZANFM_RECORD_COMMANDS_H_
#define ZANFM_RECORD_COMMANDS_H_

#include <CLI/CLI.hpp>
#include <string>

namespace zanfm {

class RecordCommands {
 public:
  explicit RecordCommands(CLI::App& app);

  bool Chosen() const;
  // Runs the chosen command; the exit status (0 only on success).
  int Run(bool xml);

 private:
  CLI::App* record_;
  CLI::App* keep_;
  CLI::App* forget_;
  std::string file_;
  int song_ = 0;
  std::string title_;
  std::string usb_;
};

// The demo's step on the internal storage of the image set as system root:
// records a short MIDI performance, then keeps it under a title.  0 on
// success.
int DemoRecording(bool xml);

}  // namespace zanfm

#endif  // ZANFM_RECORD_COMMANDS_H_
