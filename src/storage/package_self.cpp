// The line-oriented package decoder for "<SELF>" packages: the base64 text
// that follows <file filename="NAME"> goes to output + ".b64", and openssl
// decodes it beside the package.
#include <unistd.h>

#include <cstdio>
#include <cstring>

#include "common/handles.h"
#include "storage/package_decode.h"
#include "zansong/common/path.h"
#include "zansong/storage/package.h"

namespace {

// "<SELF>" must stand within the first lines of a package.
constexpr int kRootLineLimit = 10;
const char kFileTag[] = "<FILEFILENAME=\"";
constexpr int kFileTagLength = sizeof(kFileTag) - 1;

enum class State { kRoot, kFileTag, kTagEnd, kData, kDone, kFailed };

class LineDecoder {
 public:
  explicit LineDecoder(const TSString& packagePath) : packageDir_(ExtractFileDirSX(packagePath)) {}
  ~LineDecoder() { Discard(); }

  // Examines one line as read (line end included); returns the new state.
  State Feed(const char* raw, int lineNumber) {
    TSString line(raw);
    line.Strip(" ");
    TSString upper = line;
    upper.UpperCase();
    switch (state_) {
      case State::kRoot:
        if (upper.AnsiPos("<SELF>") == 0) {
          if (lineNumber >= kRootLineLimit) state_ = State::kFailed;
          return state_;
        }
        state_ = State::kFileTag;
        return FindFileTag(line, upper);
      case State::kFileTag:
        return FindFileTag(line, upper);
      case State::kTagEnd: {
        int end = line.AnsiPos(">");
        if (end > 0) {
          state_ = State::kData;
          Data(line.SubString(end + 1));
        }
        return state_;
      }
      case State::kData:
        Data(line);
        return state_;
      default:
        return state_;
    }
  }

  State state() const { return state_; }
  const TSString& output() const { return output_; }

  // Closes the ".b64" file; false when the close failed (the file is then
  // removed and the decode has failed).
  bool CloseBase64() {
    if (!base64_.valid()) return true;
    bool ok = base64_.Close() == 0;
    if (!ok) Fail();
    return ok;
  }

  // Removes the ".b64" file (after a failure, or once decoded).
  void Discard() {
    base64_.Close();
    if (output_.Length() > 0) ::unlink((output_ + ".b64").c_str());
  }

 private:
  State FindFileTag(const TSString& line, const TSString& upper) {
    int tag = upper.AnsiPos(kFileTag);
    if (tag == 0) return state_;
    TSString rest = line.SubString(tag + kFileTagLength);
    int quote = rest.AnsiPos("\"");
    if (quote <= 1) return state_ = State::kFailed;  // empty or unterminated name
    TSString name = rest.SubString(1, quote - 1);
    if (!zansong::IsSafePackageFileName(name)) return state_ = State::kFailed;
    name = ExtractFileNameSX(name);
    if (name.Length() == 0) return state_ = State::kFailed;
    base64_ = zansong::CreateBase64File(packageDir_, name, &output_);
    if (!base64_.valid()) return state_ = State::kFailed;
    TSString afterName = rest.SubString(quote + 1);
    int end = afterName.AnsiPos(">");
    if (end == 0) return state_ = State::kTagEnd;
    state_ = State::kData;
    Data(afterName.SubString(end + 1));
    return state_;
  }

  // One line of base64 text: trimmed, without its line end; a "<" ends the
  // data, and only the text before it counts.
  void Data(TSString text) {
    int close = text.AnsiPos("<");
    if (close > 0) {
      text.SetLength(close - 1);
      state_ = State::kDone;
    }
    text.Trim();
    if (text.Length() == 0) return;
    if (std::fwrite(text.c_str(), 1, text.Length(), base64_.get()) !=
        static_cast<size_t>(text.Length())) {
      Fail();
    }
  }

  void Fail() {
    Discard();
    state_ = State::kFailed;
  }

  TSString packageDir_;
  TSString output_;
  zansong::ScopedFile base64_{nullptr};
  State state_ = State::kRoot;
};

}  // namespace

TSString ChangeB64ToBin(const char* path) {
  zansong::ScopedFile package(std::fopen(path, "rb"));
  if (!package.valid()) return TSString();
  LineDecoder decoder{TSString(path)};
  char line[1024];
  int lineNumber = 0;
  while (std::fgets(line, sizeof(line), package.get()) != nullptr) {
    State state = decoder.Feed(line, ++lineNumber);
    if (state == State::kDone || state == State::kFailed) break;
  }
  package.Close();
  // Only a package whose base64 text ended with its closing tag is decoded:
  // a cut download is not taken for a song.
  if (decoder.state() != State::kDone || !decoder.CloseBase64()) return TSString();

  const TSString output = decoder.output();
  if (!zansong::DecodeBase64File(output)) return TSString();  // the decoder removes the ".b64"
  ::unlink((output + ".bak").c_str());
  decoder.Discard();
  return output;
}

int FM_ChangeB64ToBin(const char* path, char* out, int len) {
  TSString output = ChangeB64ToBin(path);
  if (output.Length() == 0) return 0;
  if (out != nullptr && len > 0) std::strncpy(out, output.c_str(), len);
  return 1;
}
