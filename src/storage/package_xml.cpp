// The XML package decoder: Expat gathers the base64 text of the "file"
// element into output + ".b64", and openssl decodes it beside the package.
#include <expat.h>
#include <strings.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "common/handles.h"
#include "storage/package_decode.h"
#include "zansong/common/path.h"
#include "zansong/storage/package.h"

namespace {

// Owns one Expat parser.
class ScopedParser {
 public:
  ScopedParser() : parser_(XML_ParserCreate(nullptr)) {}
  ~ScopedParser() {
    if (parser_ != nullptr) XML_ParserFree(parser_);
  }
  ScopedParser(const ScopedParser&) = delete;
  ScopedParser& operator=(const ScopedParser&) = delete;

  bool valid() const { return parser_ != nullptr; }
  XML_Parser get() const { return parser_; }

 private:
  XML_Parser parser_;
};

struct PackageState {
  ~PackageState() { CloseBase64(); }

  // Closes the ".b64" file when it is open, noting a failed close.
  void CloseBase64() {
    if (base64.Close() != 0) writeFailed = true;
  }

  TSString packageDir;
  TSString output;  // "" until a usable "filename" attribute is seen
  std::string ackurl;
  zansong::ScopedFile base64{nullptr};  // output + ".b64" while the "file" element is open
  bool writeFailed = false;
  bool refused = false;  // an output that would leave the directory, or no ".b64"
};

bool IsBase64Byte(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '+' ||
         c == '/' || c == '=';
}

void XMLCALL OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
  PackageState& state = *static_cast<PackageState*>(data);
  if (strcasecmp(name, "file") != 0) return;
  for (int i = 0; attributes[i] != nullptr && attributes[i + 1] != nullptr; i += 2) {
    const char* key = attributes[i];
    const char* value = attributes[i + 1];
    if (strcasecmp(key, "filename") == 0) {
      state.CloseBase64();
      state.base64 = zansong::CreateBase64File(state.packageDir, TSString(value), &state.output);
      if (!state.base64.valid()) state.refused = true;
    } else if (strcasecmp(key, "ackurl") == 0) {
      state.ackurl = value;
    }
  }
}

void XMLCALL OnEnd(void* data, const XML_Char* name) {
  PackageState& state = *static_cast<PackageState*>(data);
  if (strcasecmp(name, "file") == 0) state.CloseBase64();
}

// Everything the element handlers do not take, character data included:
// the base64 alphabet of it goes to the ".b64" file while it is open.
void XMLCALL OnText(void* data, const XML_Char* text, int length) {
  PackageState& state = *static_cast<PackageState*>(data);
  if (!state.base64.valid()) return;
  for (int i = 0; i < length; ++i) {
    if (IsBase64Byte(text[i]) && std::fputc(text[i], state.base64.get()) == EOF)
      state.writeFailed = true;
  }
}

void CopyOut(char* out, int len, const char* text) {
  if (out != nullptr && len > 0) std::strncpy(out, text, len);
}

}  // namespace

int FM_ChangeB64ToBin2(const char* path, char* name, int nameLen, char* ackurl, int ackLen) {
  zansong::ScopedFile package(std::fopen(path, "rb"));
  if (!package.valid()) return 0;
  ScopedParser parser;
  if (!parser.valid()) return 0;

  PackageState state;
  state.packageDir = ExtractFileDirSX(TSString(path));
  XML_SetUserData(parser.get(), &state);
  XML_SetElementHandler(parser.get(), OnStart, OnEnd);
  XML_SetDefaultHandler(parser.get(), OnText);

  char buffer[1024];
  for (;;) {
    size_t n = std::fread(buffer, 1, sizeof(buffer), package.get());
    const bool last = n < sizeof(buffer);
    if (XML_Parse(parser.get(), buffer, static_cast<int>(n), last) == XML_STATUS_ERROR) return 0;
    if (last) break;
  }
  package.Close();
  state.CloseBase64();

  TSString output = state.output;
  if (state.refused || output.Length() == 0 || state.writeFailed) {
    std::printf("base64 error!\n");
    std::fflush(stdout);
    output = TSString();
  } else if (!zansong::DecodeBase64File(output)) {
    output = TSString();
  }
  CopyOut(name, nameLen, output.c_str());
  CopyOut(ackurl, ackLen, state.ackurl.c_str());
  return 0;
}
