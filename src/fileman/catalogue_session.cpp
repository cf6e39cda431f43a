// CatalogueSession: InitDB, Open and the failure line; commit and close on
// every exit.
#include "fileman/catalogue_session.h"

#include <sqlite3.h>

#include <cstdio>

namespace zansong {

namespace {

void PutLine(const char* text) {
  std::puts(text);
  std::fflush(stdout);
}

}  // namespace

CatalogueSession::CatalogueSession(const char* root, FailureLine failureLine) {
  if (!man_.InitDB(root)) {
    failed_ = Step::kInit;
  } else if (!man_.Open()) {
    failed_ = Step::kOpen;
  }
  if (failed_ == Step::kNone) return;
  if (failureLine == FailureLine::kCreateOrOpen) {
    PutLine(failed_ == Step::kInit ? "DB Create Error" : "DB Open Error");
  } else if (failureLine == FailureLine::kOpen) {
    PutLine("DB Open Error");
  }
}

WriteBatch& CatalogueSession::batch() {
  if (!batch_) batch_.emplace(man_);
  return *batch_;
}

bool CatalogueSession::Commit() {
  if (batch_) batch_->Commit();
  return !writeFailed();
}

long long CatalogueSession::TotalChanges() const {
  return man_.db != nullptr ? sqlite3_total_changes(man_.db) : 0;
}

bool CatalogueSession::Close() {
  const bool committed = Commit();
  man_.Close();
  return committed;
}

}  // namespace zansong
