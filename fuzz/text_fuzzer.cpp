// Feeds arbitrary bytes through the text layer: editing with arbitrary
// positions, the Shift-JIS scans, the quoting operations and the path
// splitters, and checks the properties they promise.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "zansong/common/charset.h"
#include "zansong/common/path.h"
#include "zansong/common/string_list.h"
#include "zansong/common/tsstring.h"

namespace {

void Check(bool ok) {
  if (!ok) std::abort();
}

int TakeInt(const uint8_t*& data, size_t& size) {
  int value = 0;
  if (size >= sizeof value) {
    std::memcpy(&value, data, sizeof value);
    data += sizeof value;
    size -= sizeof value;
  }
  return value;
}

size_t Count(const std::string& s, const char* set) {
  size_t n = 0;
  for (char c : s) n += std::strchr(set, c) != nullptr && c != 0;
  return n;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int pos = TakeInt(data, size);
  const int count = TakeInt(data, size);
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string text = bytes.c_str();  // up to the first zero byte
  const TSString s(text.c_str());
  Check(s.Length() == static_cast<int>(text.size()));

  TSString edited(s);
  edited.Delete(pos, count);
  Check(edited.Length() <= s.Length());
  edited.Insert(s, pos);
  TSString sub = s.SubString(pos, count);
  Check(sub.Length() <= s.Length());
  edited.SetLength(count);
  edited.Trim();
  edited.UpperCaseSJIS();
  const int found = s.AnsiPosSJIS(sub);
  Check(found == 0 || s.AnsiPos(sub) <= found);

  TSString quoted(s);
  quoted.SQLString(1);
  Check(static_cast<size_t>(quoted.Length()) == text.size() + Count(text, "'\\"));
  TSString sjis(s);
  sjis.SQLString(0);
  Check(sjis.Length() >= s.Length() && sjis.Length() <= quoted.Length());
  TSString xml(s);
  xml.XMLEscapeString();
  Check(xml.AnsiPos(TSString("<")) == 0 && xml.AnsiPos(TSString("\"")) == 0);

  // A field quoted for CSV splits back into itself (line ends end a line).
  if (text.find_first_of("\r\n") == std::string::npos) {
    TSStringList fields;
    CSVToStrings(DoubleQuoteString(s), &fields);
    Check(fields.Count() == 1);
    Check(*static_cast<TSString*>(fields.GetItem(0)) == s);
  }

  // Shift-JIS and UTF-8 both ways, whatever the bytes; a converted text is
  // terminated where its length says.
  const TSString utf8 = StringConv(text.c_str(), "SHIFT-JIS", "UTF-8");
  Check(std::strlen(utf8.c_str()) == static_cast<size_t>(utf8.Length()));
  const TSString back = StringConv(utf8.c_str(), "UTF-8", "SHIFT-JIS");
  Check(std::strlen(back.c_str()) == static_cast<size_t>(back.Length()));
  StringConv(text.c_str(), "UTF-8", "SHIFT-JIS");

  // Any line splits into fields, whatever its quotes.
  TSStringList anyFields;
  CSVToStrings(s, &anyFields);

  ExtractFileDirSX(s);
  ExtractFileNameSX(s);
  ExtractFileExtSX(s);
  ChangeFileExtSX(s, TSString(".mid"));
  is_SJIS(s);
  return 0;
}
