// Writer of downloaded-song packages: XML text that carries a song file
// base64-encoded in a "file" element, with the name it is stored under.
//
// Base64(bytes) is the standard base64 text of bytes ("=" padded, no line
// ends).  XmlPackage(fileName, bytes) is a well-formed package:
//   <?xml version="1.0" encoding="UTF-8"?>
//   <SELF>
//     <file filename="NAME" ackurl="...">
//       base64 text in lines of 76 characters
//     </file>
//   </SELF>
// fileName is inserted as given (the caller escapes "&", "<" and quotes).
// WritePackage() saves XmlPackage(fileName, bytes) to path; true on success.
#ifndef ZANSONG_SAMPLEFILES_PACKAGE_WRITER_H_
#define ZANSONG_SAMPLEFILES_PACKAGE_WRITER_H_

#include <string>

namespace samplefiles {

std::string Base64(const std::string& bytes);
std::string XmlPackage(const std::string& fileName, const std::string& bytes);
bool WritePackage(const std::string& path, const std::string& fileName, const std::string& bytes);

}  // namespace samplefiles

#endif  // ZANSONG_SAMPLEFILES_PACKAGE_WRITER_H_
