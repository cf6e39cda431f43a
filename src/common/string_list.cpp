#include "zansong/common/string_list.h"

#include <cstdio>
#include <string>

#include "common/handles.h"

namespace {

// Line buffer size of the line-file readers: longer lines arrive in pieces.
constexpr int kLineBufferSize = 1024;

// Calls add(line) for every piece fgets returns from file.
template <typename Add>
void ReadLines(FILE* file, Add add) {
  char line[kLineBufferSize];
  while (std::fgets(line, sizeof line, file) != nullptr) add(TSString(line));
}

// Writes entry(0) .. entry(count-1) to path exactly as they are.  Returns
// 1, or 0 when the file cannot be opened or a write (or the final flush)
// fails; writing stops at the first failure.
template <typename Entry>
int WriteEntries(const TSString& path, int count, Entry entry) {
  zansong::ScopedFile file(std::fopen(path.c_str(), "w"));
  if (!file.valid()) return 0;
  for (int i = 0; i < count; ++i) {
    const TSString& text = entry(i);
    if (std::fwrite(text.c_str(), 1, static_cast<size_t>(text.Length()), file.get()) !=
        static_cast<size_t>(text.Length())) {
      return 0;
    }
  }
  return file.Close() == 0 ? 1 : 0;
}

}  // namespace

// TSList

TSList::TSList() : head_(new Node{nullptr, nullptr}), tail_(head_), cursor_(head_), count_(0) {}

TSList::~TSList() {
  Clear();
  delete tail_;
}

void TSList::Add(void* item) {
  tail_->item = item;
  tail_->next = new Node{nullptr, nullptr};
  tail_ = tail_->next;
  ++count_;
}

void TSList::Insert(int index, void* item) {
  if (index < 0 || index >= count_) {
    Add(item);
    return;
  }
  Node* node = new Node{nullptr, item};
  if (index == 0) {
    node->next = head_;
    head_ = node;
  } else {
    Node* before = head_;
    for (int i = 1; i < index; ++i) before = before->next;
    node->next = before->next;
    before->next = node;
  }
  ++count_;
}

void* TSList::GetItem(int index) const {
  if (index < 0 || index >= count_) return tail_->item;
  Node* node = head_;
  for (int i = 0; i < index; ++i) node = node->next;
  return node->item;
}

void TSList::First() { cursor_ = head_; }

bool TSList::HasNext() const { return cursor_ != tail_; }

void* TSList::GetNext() {
  void* item = cursor_->item;
  if (cursor_ != tail_) cursor_ = cursor_->next;
  return item;
}

void TSList::Delete(int index) {
  if (index < 0 || index >= count_) return;
  Node* removed;
  if (index == 0) {
    removed = head_;
    head_ = removed->next;
  } else {
    Node* before = head_;
    for (int i = 1; i < index; ++i) before = before->next;
    removed = before->next;
    before->next = removed->next;
  }
  // A cursor on the removed node moves on to what follows it.
  if (cursor_ == removed) cursor_ = removed->next;
  delete removed;
  --count_;
}

void TSList::Clear() {
  while (head_ != tail_) {
    Node* next = head_->next;
    delete head_;
    head_ = next;
  }
  cursor_ = tail_;
  count_ = 0;
}

// TSStringList

TSStringList::TSStringList() = default;

TSStringList::~TSStringList() { Clear(); }

void TSStringList::Add(const TSString& s) { TSList::Add(new TSString(s)); }

void TSStringList::Insert(int index, const TSString& s) { TSList::Insert(index, new TSString(s)); }

void TSStringList::Delete(int index) {
  TSString* s = static_cast<TSString*>(GetItem(index));
  TSList::Delete(index);
  delete s;
}

void TSStringList::Clear() {
  First();
  while (HasNext()) delete static_cast<TSString*>(GetNext());
  TSList::Clear();
}

TSString TSStringList::GetNextString() {
  TSString* s = static_cast<TSString*>(GetNext());
  return s == nullptr ? TSString() : *s;
}

int TSStringList::LoadFromFile(const TSString& path) {
  zansong::ScopedFile file(std::fopen(path.c_str(), "r"));
  if (!file.valid()) return 0;
  Clear();
  ReadLines(file.get(), [this](const TSString& line) { Add(line); });
  return 1;
}

int TSStringList::SaveToFile(const TSString& path) {
  First();
  return WriteEntries(path, Count(), [this](int) { return GetNextString(); });
}

void TSStringList::Print() {
  First();
  while (HasNext()) std::printf("%s\n", GetNextString().c_str());
  std::fflush(stdout);
}

// TSStringVector

void TSStringVector::Add(TSString s) { strings_.push_back(s); }

void TSStringVector::Clear() { strings_.clear(); }

int TSStringVector::LoadFromFile(const TSString& path) {
  zansong::ScopedFile file(std::fopen(path.c_str(), "r"));
  if (!file.valid()) return 0;
  ReadLines(file.get(), [this](const TSString& line) { Add(line); });
  return 1;
}

int TSStringVector::SaveToFile(const TSString& path) {
  return WriteEntries(
      path, Count(), [this](int i) -> const TSString& { return strings_[static_cast<size_t>(i)]; });
}

void TSStringVector::Print() {
  for (const TSString& s : strings_) std::printf("%s", s.c_str());
  std::fflush(stdout);
}

// CSV

void CSVToStrings(const TSString& line, TSStringList* fields) {
  fields->Clear();
  std::string field;
  bool quoted = false;
  const int length = line.Length();
  for (int i = 0; i < length; ++i) {
    const char c = line[i];
    if (quoted) {
      if (c != '"') {
        field.push_back(c);
      } else if (i + 1 < length && line[i + 1] == '"') {
        field.push_back('"');
        ++i;
      } else {
        quoted = false;
      }
    } else if (c == ',') {
      fields->Add(TSString(field.c_str()));
      field.clear();
    } else if (c == '"') {
      quoted = true;
    } else if (c == '\n' || c == '\r') {
      break;
    } else {
      field.push_back(c);
    }
  }
  fields->Add(TSString(field.c_str()));
}
