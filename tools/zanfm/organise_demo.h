// The demo's organising steps on a registered sample library: a playlist
// made and filled, a song renamed together with its files, an album and a
// song deleted in one request; each shown with the catalogue afterwards.
#ifndef ZANFM_ORGANISE_DEMO_H_
#define ZANFM_ORGANISE_DEMO_H_

#include <string>

namespace zanfm {

// Runs the steps on the internal storage root (ending in "/") with the
// sample library registered.  False, after saying why on standard error,
// when a step fails.
bool DemoOrganising(const std::string& root, bool raw);

}  // namespace zanfm

#endif  // ZANFM_ORGANISE_DEMO_H_
