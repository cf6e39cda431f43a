#include "zansong/async/cancel.h"

#include <csignal>

namespace {

// Written from signal handlers as well as from ordinary code, so it must be
// a sig_atomic_t read and written through volatile accesses.
volatile std::sig_atomic_t cancelflag = 0;

}  // namespace

void ClearCancelFlag() { cancelflag = 0; }

void SetCancelFlag() { cancelflag = 1; }

bool GetCancelFlag() { return cancelflag != 0; }
