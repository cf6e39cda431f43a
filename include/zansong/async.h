// Multi-target operations in a child process, and the cancel flag.
#ifndef ZANSONG_ASYNC_H_
#define ZANSONG_ASYNC_H_

#include "zansong/async/cancel.h"
#include "zansong/async/list_operations.h"
#include "zansong/async/runner.h"
#include "zansong/async/targets.h"

#endif  // ZANSONG_ASYNC_H_
