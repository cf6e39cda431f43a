// The numbering that makes a new album or playlist title unique.
//
// UniqueTitleSuffix(isFree) chooses the suffix to append to a wanted title:
// isFree(suffix) tells whether the title with that suffix is free.
//   - "" when the plain title is free;
//   - otherwise n runs from 99 down while "_" + three-digit n is free and n
//     is above 1; the suffix is "_" + three-digit (n + 1), so that the
//     number is one above the highest in use (gaps below it are not
//     reused) and "_002" when only the plain title is taken;
//   - when that would be "_100" (the "_099" is taken), the first free of
//     "_100", "_101", ... (unpadded).
// isFree is asked only about the suffixes named above.
#ifndef ZANSONG_SRC_FILEMAN_UNIQUE_TITLE_H_
#define ZANSONG_SRC_FILEMAN_UNIQUE_TITLE_H_

#include <functional>
#include <string>

namespace zansong {

std::string UniqueTitleSuffix(const std::function<bool(const std::string& suffix)>& isFree);

}  // namespace zansong

#endif  // ZANSONG_SRC_FILEMAN_UNIQUE_TITLE_H_
