// Runs a library call with its standard output read back line by line and
// shown to a person: progress boxes as one updating progress line, other
// message boxes as readable messages, diagnostics as they are.  With raw
// set, the lines are passed through unchanged.
#ifndef ZANFM_MESSAGE_VIEW_H_
#define ZANFM_MESSAGE_VIEW_H_

#include <functional>
#include <string>

namespace zanfm {

// Calls fn with standard output redirected to a pipe that a reader thread
// renders onto the original standard output.  Returns fn's result.
int RunShowingMessages(bool raw, const std::function<int()>& fn);

// The readable form of one line printed by the library ("" for lines that
// show nothing, such as window refresh requests).  *progress is set when
// the line is a progress box.
std::string RenderLine(const std::string& line, bool* progress);

}  // namespace zanfm

#endif  // ZANFM_MESSAGE_VIEW_H_
