// Small containers of the text layer.
//
// TSList: a singly linked list of untyped item pointers with a built-in
// cursor.  It always ends in one empty end node (item null); adding stores
// the item in the end node and appends a fresh one, so appending never walks
// the list.  The list does not own its items: Delete and Clear free nodes
// only.  Indexes count from 0.
//
// TSStringList: a TSList whose items are heap copies of TSString that it
// owns (made by Add, Insert; freed by Delete, Clear and the destructor).
// GetItem(i) of a TSStringList is a TSString*.
//
// TSStringVector: a growable array of TSString values.
//
// Line files (LoadFromFile / SaveToFile): lines are read with a 1024-byte
// buffer; each entry keeps its line end and a line longer than 1023 bytes
// arrives as several entries.  Saving writes every entry exactly as it is,
// so a loaded file is written back unchanged.  Both return 1, or 0 when the
// file cannot be opened (a failed load leaves the contents as they were).
//
// CSVToStrings splits one CSV line into fields: the counterpart of
// DoubleQuoteString.
#ifndef ZANSONG_COMMON_STRING_LIST_H_
#define ZANSONG_COMMON_STRING_LIST_H_

#include <cstddef>
#include <vector>

#include "zansong/common/tsstring.h"
#include "zansong/export.h"

class ZANSONG_EXPORT TSList {
 public:
  TSList();
  ~TSList();
  TSList(const TSList&) = delete;
  TSList& operator=(const TSList&) = delete;

  int Count() const { return count_; }

  // Appends item.
  void Add(void* item);
  // Inserts item at index (before the item there) when index < Count(),
  // otherwise appends it.
  void Insert(int index, void* item);
  // The item at index, or null when index is not in 0..Count()-1.
  void* GetItem(int index) const;

  // Cursor: First(); while (HasNext()) item = GetNext();
  void First();
  bool HasNext() const;
  void* GetNext();

  // Unlinks the node at index; nothing for an index outside 0..Count()-1.
  // The item is not freed.
  void Delete(int index);
  // Frees every node but the end node; Count() becomes 0.
  void Clear();

 private:
  struct Node {
    Node* next;
    void* item;
  };

  Node* head_;
  Node* tail_;    // the empty end node
  Node* cursor_;  // the node GetNext returns
  int count_;
};

class ZANSONG_EXPORT TSStringList : public TSList {
 public:
  TSStringList();
  ~TSStringList();

  // Appends / inserts a new copy of s.
  void Add(const TSString& s);
  void Insert(int index, const TSString& s);
  // Removes the entry at index and frees its string.
  void Delete(int index);
  // Frees every string and empties the list.
  void Clear();

  // A copy of the string at the cursor; the cursor moves on.  Use after
  // First() while HasNext().
  TSString GetNextString();

  // Replaces the contents by the lines of path (mode "r").
  int LoadFromFile(const TSString& path);
  // Writes every entry (mode "wt"); stops at the first failed write.
  int SaveToFile(const TSString& path);
  // Writes each entry to standard output followed by a line end.
  void Print();
};

class ZANSONG_EXPORT TSStringVector {
 public:
  int Count() const { return static_cast<int>(strings_.size()); }
  // A copy of string i; i must be in 0..Count()-1.
  TSString operator[](int i) const { return strings_[static_cast<size_t>(i)]; }
  void Add(TSString s);
  void Clear();

  // Appends the lines of path after the present contents (mode "r").
  int LoadFromFile(const TSString& path);
  // Writes every entry (mode "wt"); stops at the first failed write.
  int SaveToFile(const TSString& path);
  // Writes the strings to standard output with nothing between them.
  void Print();

 private:
  std::vector<TSString> strings_;
};

// Splits line into fields (cleared first).  Outside quotes "," ends a
// field, a double quote opens a quoted part (also within a field), and a
// line feed or carriage return ends the line.  Inside quotes every byte is
// kept, a doubled double quote gives one, and a single one closes the
// quoted part.  The last field is always appended, so the empty line gives
// one empty field and a trailing comma a final empty field.
ZANSONG_EXPORT void CSVToStrings(const TSString& line, TSStringList* fields);

#endif  // ZANSONG_COMMON_STRING_LIST_H_
