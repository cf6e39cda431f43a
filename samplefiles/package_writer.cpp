#include "samplefiles/package_writer.h"

#include "samplefiles/midi_writer.h"

namespace samplefiles {

std::string Base64(const std::string& bytes) {
  static const char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  for (size_t i = 0; i < bytes.size(); i += 3) {
    unsigned v = static_cast<unsigned>(static_cast<unsigned char>(bytes[i])) << 16;
    if (i + 1 < bytes.size())
      v |= static_cast<unsigned>(static_cast<unsigned char>(bytes[i + 1])) << 8;
    if (i + 2 < bytes.size()) v |= static_cast<unsigned char>(bytes[i + 2]);
    out += kAlphabet[(v >> 18) & 63];
    out += kAlphabet[(v >> 12) & 63];
    out += i + 1 < bytes.size() ? kAlphabet[(v >> 6) & 63] : '=';
    out += i + 2 < bytes.size() ? kAlphabet[v & 63] : '=';
  }
  return out;
}

std::string XmlPackage(const std::string& fileName, const std::string& bytes) {
  const std::string text = Base64(bytes);
  std::string lines;
  for (size_t i = 0; i < text.size(); i += 76) lines += "    " + text.substr(i, 76) + "\n";
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SELF>\n  <file filename=\"" + fileName +
         "\" ackurl=\"https://shop.example/ack\">\n" + lines + "  </file>\n</SELF>\n";
}

bool WritePackage(const std::string& path, const std::string& fileName, const std::string& bytes) {
  return SaveBytes(path, XmlPackage(fileName, bytes));
}

}  // namespace samplefiles
