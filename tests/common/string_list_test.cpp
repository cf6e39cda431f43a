#include "zansong/common/string_list.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/device_image.h"
#include "support/stdout_capture.h"

namespace {

using zansong_test::DeviceTest;
using zansong_test::ReadFile;
using zansong_test::StdoutCapture;
using zansong_test::WriteFile;

std::vector<std::string> Entries(TSStringList& list) {
  std::vector<std::string> out;
  list.First();
  while (list.HasNext()) out.push_back(list.GetNextString().c_str());
  return out;
}

std::vector<std::string> Entries(const TSStringVector& vector) {
  std::vector<std::string> out;
  for (int i = 0; i < vector.Count(); ++i) out.push_back(vector[i].c_str());
  return out;
}

std::vector<std::string> Fields(const char* line) {
  TSStringList fields;
  CSVToStrings(TSString(line), &fields);
  return Entries(fields);
}

using Strings = std::vector<std::string>;

TEST(TSListTest, AddAppendsAndCursorWalksInOrder) {
  int a = 1, b = 2, c = 3;
  TSList list;
  EXPECT_EQ(0, list.Count());
  list.First();
  EXPECT_FALSE(list.HasNext());
  list.Add(&a);
  list.Add(&b);
  list.Add(&c);
  EXPECT_EQ(3, list.Count());
  std::vector<void*> seen;
  list.First();
  while (list.HasNext()) seen.push_back(list.GetNext());
  EXPECT_EQ((std::vector<void*>{&a, &b, &c}), seen);
}

TEST(TSListTest, GetItemAtOrPastCountIsNull) {
  int a = 1;
  TSList list;
  EXPECT_EQ(nullptr, list.GetItem(0));
  list.Add(&a);
  EXPECT_EQ(&a, list.GetItem(0));
  EXPECT_EQ(nullptr, list.GetItem(1));
  EXPECT_EQ(nullptr, list.GetItem(99));
  EXPECT_EQ(nullptr, list.GetItem(-1));
}

TEST(TSListTest, InsertTakesThePositionOrAppends) {
  int a = 1, b = 2, c = 3, d = 4;
  TSList list;
  list.Add(&b);
  list.Insert(0, &a);  // before the head
  list.Insert(2, &d);  // index equal to count appends
  list.Insert(2, &c);  // in the middle
  ASSERT_EQ(4, list.Count());
  EXPECT_EQ(&a, list.GetItem(0));
  EXPECT_EQ(&b, list.GetItem(1));
  EXPECT_EQ(&c, list.GetItem(2));
  EXPECT_EQ(&d, list.GetItem(3));
  EXPECT_EQ(nullptr, list.GetItem(4));
}

TEST(TSListTest, DeleteUnlinksHeadMiddleAndLast) {
  int a = 1, b = 2, c = 3, d = 4;
  TSList list;
  list.Delete(0);  // empty list: nothing
  list.Add(&a);
  list.Add(&b);
  list.Add(&c);
  list.Add(&d);
  list.Delete(4);  // not below count: nothing
  EXPECT_EQ(4, list.Count());
  list.Delete(3);  // last
  list.Add(&d);    // the end node is still reachable after deleting the last
  list.Delete(0);  // head
  list.Delete(1);  // middle
  ASSERT_EQ(2, list.Count());
  EXPECT_EQ(&b, list.GetItem(0));
  EXPECT_EQ(&d, list.GetItem(1));
  EXPECT_EQ(nullptr, list.GetItem(2));
}

TEST(TSListTest, ClearEmptiesAndListStaysUsable) {
  int a = 1, b = 2;
  TSList list;
  list.Add(&a);
  list.Add(&b);
  list.Clear();
  EXPECT_EQ(0, list.Count());
  list.First();
  EXPECT_FALSE(list.HasNext());
  list.Add(&b);
  EXPECT_EQ(&b, list.GetItem(0));
}

TEST(TSStringListTest, OwnsCopiesOfAddedStrings) {
  TSStringList list;
  {
    TSString s("one");
    list.Add(s);
    s = "changed";
  }
  list.Add(TSString("two"));
  list.Insert(0, TSString("zero"));
  EXPECT_EQ((Strings{"zero", "one", "two"}), Entries(list));
  EXPECT_STREQ("one", static_cast<TSString*>(list.GetItem(1))->c_str());
  list.Delete(1);
  EXPECT_EQ((Strings{"zero", "two"}), Entries(list));
  list.Clear();
  EXPECT_EQ(0, list.Count());
}

TEST_F(DeviceTest, StringListLoadKeepsLineEndsAndSaveWritesThemBack) {
  const std::string path = image_.Path("/tmp/lines.txt");
  const std::string text = "first\nsecond\r\nno end";
  WriteFile(path, text);
  TSStringList list;
  list.Add(TSString("old"));
  ASSERT_EQ(1, list.LoadFromFile(TSString(path.c_str())));
  EXPECT_EQ((Strings{"first\n", "second\r\n", "no end"}), Entries(list));

  const std::string copy = image_.Path("/tmp/copy.txt");
  ASSERT_EQ(1, list.SaveToFile(TSString(copy.c_str())));
  EXPECT_EQ(text, ReadFile(copy));
}

TEST_F(DeviceTest, StringListLoadSplitsLongLinesAt1023Bytes) {
  const std::string path = image_.Path("/tmp/long.txt");
  const std::string line(2000, 'x');
  WriteFile(path, line + "\n");
  TSStringList list;
  ASSERT_EQ(1, list.LoadFromFile(TSString(path.c_str())));
  const Strings entries = Entries(list);
  ASSERT_EQ(2u, entries.size());
  EXPECT_EQ(std::string(1023, 'x'), entries[0]);
  EXPECT_EQ(std::string(977, 'x') + "\n", entries[1]);
}

TEST_F(DeviceTest, StringListLoadOfMissingFileKeepsOldEntries) {
  TSStringList list;
  list.Add(TSString("kept"));
  EXPECT_EQ(0, list.LoadFromFile(TSString(image_.Path("/tmp/missing.txt").c_str())));
  EXPECT_EQ((Strings{"kept"}), Entries(list));
}

TEST_F(DeviceTest, StringListSaveIntoMissingDirectoryFails) {
  TSStringList list;
  list.Add(TSString("a\n"));
  EXPECT_EQ(0, list.SaveToFile(TSString(image_.Path("/no/such/dir/f.txt").c_str())));
}

TEST(TSStringListTest, SaveReportsAFailedWrite) {
  TSStringList list;
  list.Add(TSString(std::string(8192, 'x').c_str()));
  EXPECT_EQ(0, list.SaveToFile(TSString("/dev/full")));
}

TEST(TSStringListTest, PrintWritesEachEntryAsALine) {
  TSStringList list;
  list.Add(TSString("a"));
  list.Add(TSString("b"));
  StdoutCapture capture;
  list.Print();
  EXPECT_EQ("a\nb\n", capture.Finish());
}

TEST_F(DeviceTest, StringVectorLoadAppendsToExistingContents) {
  const std::string path = image_.Path("/tmp/lines.txt");
  WriteFile(path, "a\nb\n");
  TSStringVector vector;
  vector.Add(TSString("first\n"));
  ASSERT_EQ(1, vector.LoadFromFile(TSString(path.c_str())));
  ASSERT_EQ(1, vector.LoadFromFile(TSString(path.c_str())));
  EXPECT_EQ((Strings{"first\n", "a\n", "b\n", "a\n", "b\n"}), Entries(vector));

  const std::string copy = image_.Path("/tmp/copy.txt");
  ASSERT_EQ(1, vector.SaveToFile(TSString(copy.c_str())));
  EXPECT_EQ("first\na\nb\na\nb\n", ReadFile(copy));

  EXPECT_EQ(0, vector.LoadFromFile(TSString(image_.Path("/tmp/missing").c_str())));
  EXPECT_EQ(5, vector.Count());
  vector.Clear();
  EXPECT_EQ(0, vector.Count());
}

TEST(TSStringVectorTest, PrintAddsNothingBetweenStrings) {
  TSStringVector vector;
  vector.Add(TSString("a"));
  vector.Add(TSString("b\n"));
  StdoutCapture capture;
  vector.Print();
  EXPECT_EQ("ab\n", capture.Finish());
}

TEST(TSStringVectorTest, SaveReportsAFailedWrite) {
  TSStringVector vector;
  vector.Add(TSString(std::string(8192, 'x').c_str()));
  EXPECT_EQ(0, vector.SaveToFile(TSString("/dev/full")));
}

TEST(CsvToStringsTest, EmptyTextGivesOneEmptyField) { EXPECT_EQ((Strings{""}), Fields("")); }

TEST(CsvToStringsTest, CommasSeparateFieldsIncludingEmptyOnes) {
  EXPECT_EQ((Strings{"a", "", "b"}), Fields("a,,b"));
  EXPECT_EQ((Strings{"a", ""}), Fields("a,"));
  EXPECT_EQ((Strings{"", "a"}), Fields(",a"));
}

TEST(CsvToStringsTest, QuotedFieldKeepsCommaAndDoubledQuote) {
  EXPECT_EQ((Strings{"x,y\"z", "b"}), Fields("\"x,y\"\"z\",b"));
  // A quoted part may begin inside a field.
  EXPECT_EQ((Strings{"ab c", "d"}), Fields("a\"b c\",d"));
  // A quote as the very last byte closes the quoted part.
  EXPECT_EQ((Strings{"a"}), Fields("\"a\""));
}

TEST(CsvToStringsTest, LineEndEndsTheLineOnlyOutsideQuotes) {
  EXPECT_EQ((Strings{"a", "b\nc"}), Fields("a,\"b\nc\"\n,ignored"));
  EXPECT_EQ((Strings{"a", "b"}), Fields("a,b\r\nc,d"));
}

TEST(CsvToStringsTest, SplitsWhatDoubleQuoteStringWrote) {
  const char* originals[] = {"plain", "a b", "it's", "x,y", "say \"hi\"", ""};
  std::string line;
  for (const char* original : originals) {
    if (!line.empty() || original != originals[0]) line += ",";
    line += DoubleQuoteString(TSString(original)).c_str();
  }
  EXPECT_EQ((Strings{"plain", "a b", "it's", "x,y", "say \"hi\"", ""}), Fields(line.c_str()));
}

TEST(CsvToStringsTest, ClearsTheFieldListFirst) {
  TSStringList fields;
  fields.Add(TSString("stale"));
  CSVToStrings(TSString("a"), &fields);
  EXPECT_EQ((Strings{"a"}), Entries(fields));
}

}  // namespace
