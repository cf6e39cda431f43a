// Private: the steps both package decoders share.
#ifndef ZANSONG_STORAGE_PACKAGE_DECODE_H_
#define ZANSONG_STORAGE_PACKAGE_DECODE_H_

#include "common/handles.h"
#include "zansong/common/tsstring.h"

namespace zansong {

// Whether a file name taken from a package may be used: not empty, not
// absolute, no ".." component, no byte below 0x20, and naming a file (no
// "." component, no final "/").  Any other name stays inside the package's
// directory.
bool IsSafePackageFileName(const TSString& name);

// Creates (or empties) the ".b64" file of the package output name in
// packageDir and returns it open for writing, with *output set to
// packageDir + "/" + name.  Refused (null, *output empty) when name is not
// a safe file name (above), when a directory on the way from packageDir is
// missing or a symbolic link, or when the output, its ".b64" or its ".bak"
// file is a symbolic link: a link planted in the download folder is never
// followed out of it.  The stream closes with the returned handle.
ScopedFile CreateBase64File(const TSString& packageDir, const TSString& name, TSString* output);

// Decodes output + ".b64" into output with the openssl program.  An earlier
// file named output is moved to output + ".bak" first and, when the decode
// fails, moved back (a failed output is removed when there was no earlier
// file).  The decode fails when openssl fails or the output is empty.
// Prints "error!" for a failed move and "base64 error!" for a failed
// decode.  True on success; output + ".b64" and output + ".bak" stay.
bool DecodeBase64File(const TSString& output);

// Moves from to to with the mv program (arguments, no shell); true on
// success.
bool MoveWithProgram(const TSString& from, const TSString& to);

}  // namespace zansong

#endif  // ZANSONG_STORAGE_PACKAGE_DECODE_H_
