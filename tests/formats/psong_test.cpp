// The song list of a piano-disk management file.
#include <list>
#include <string>
#include <vector>

#include "support/device_image.h"
#include "zansong/formats/psong.h"

namespace zansong_test {
namespace {

const char kMagic[] = "PSONG   MNG   \r\n";

struct Record {
  std::string name;    // 11-character 8+3 field
  std::string title;   // line 2
  std::string extra;   // line 3
  std::string format;  // line 4
};

// A management file: magic, a free line, "FILE" + count, header lines of
// headerChars characters in all (line ends included), then the records.
std::string ManagementFile(const std::string& count, const std::vector<Record>& records,
                           int headerLines = 2, int headerChars = 80) {
  std::string file = kMagic;
  file += "DISK 1\r\n";
  file += "FILE" + count + "\r\n";
  int each = headerChars / headerLines;
  for (int i = 0; i < headerLines; ++i) {
    int length = i + 1 == headerLines ? headerChars - each * (headerLines - 1) : each;
    file += std::string(static_cast<size_t>(length - 2), 'h') + "\r\n";
  }
  for (const Record& r : records) {
    file += r.name + "\r\n" + r.title + "\r\n" + r.extra + "\r\n" + r.format + "\r\n";
    file += "5\r\n6\r\n7\r\n8\r\n";
  }
  return file;
}

std::string Str(const TSString& s) {
  return std::string(s.c_str(), static_cast<size_t>(s.Length()));
}

Record Song(const std::string& name, const std::string& format = "        SMF0  ") {
  return Record{name, "  My   first    song                     ", "1234567ABCDEFGxyz", format};
}

class PsongTest : public DeviceTest {
 protected:
  int Read(const std::string& bytes, std::vector<TSongNameString>& songs) {
    std::string path = image_.SongRoot() + "PSONG.MNG";
    WriteFile(path, bytes);
    return GetPsongInfo(path.c_str(), songs);
  }
};

TEST_F(PsongTest, ReadsEveryRecord) {
  std::vector<TSongNameString> songs;
  int n = Read(ManagementFile("002", {Song("SONG0001MID"), Song("SONG0002   ", "        SMF1  ")}),
               songs);
  ASSERT_EQ(n, 2);
  ASSERT_EQ(songs.size(), 2u);
  EXPECT_EQ(Str(songs[0].fileName), "SONG0001.MID");
  EXPECT_EQ(Str(songs[0].title), "My first song ");
  EXPECT_EQ(Str(songs[0].extra), "ABCDEFG");
  EXPECT_EQ(songs[0].type, 1);
  EXPECT_EQ(Str(songs[1].fileName), "SONG0002");
  EXPECT_EQ(songs[1].type, 2);
}

TEST_F(PsongTest, NamesAreTrimmedAndUpperCased) {
  std::vector<TSongNameString> songs;
  ASSERT_EQ(Read(ManagementFile("001", {Song("abc     k  ")}), songs), 1);
  EXPECT_EQ(Str(songs[0].fileName), "ABC.K");
}

TEST_F(PsongTest, FormatWords) {
  std::vector<TSongNameString> songs;
  ASSERT_EQ(
      Read(ManagementFile(
               "004", {Song("A       MID", "        KTVA  "), Song("B       MID", "        SMF1xx"),
                       Song("C       MID", "        XXXX  "), Song("D       MID", "    SMF1")}),
           songs),
      4);
  EXPECT_EQ(songs[0].type, 3);
  EXPECT_EQ(songs[1].type, 2);
  EXPECT_EQ(songs[2].type, 1);
  // A fourth line shorter than 14 characters (with its line end) reads as SMF0.
  EXPECT_EQ(songs[3].type, 1);
}

TEST_F(PsongTest, ShortLinesLeaveFieldsEmpty) {
  Record r{"SHORT   MID", "short title", "123456789012", "        SMF1"};
  std::vector<TSongNameString> songs;
  ASSERT_EQ(Read(ManagementFile("001", {r}), songs), 1);
  EXPECT_EQ(Str(songs[0].title), "");
  // "123456789012\r\n" has 14 characters: the field is characters 8-14.
  EXPECT_EQ(Str(songs[0].extra), "89012\r\n");
  EXPECT_EQ(songs[0].type, 2);
}

TEST_F(PsongTest, ThirtyTwoTitleCharactersAreCollapsed) {
  Record r = Song("T       MID");
  r.title = std::string("\t A\x01\x02 B") + std::string(30, 'c');
  std::vector<TSongNameString> songs;
  ASSERT_EQ(Read(ManagementFile("001", {r}), songs), 1);
  EXPECT_EQ(Str(songs[0].title),
            "A\x01"
            "B" +
                std::string(25, 'c'));
}

TEST_F(PsongTest, MagicLineWithoutCarriageReturnIsRefused) {
  std::string file = ManagementFile("001", {Song("SONG0001MID")});
  file.erase(14, 1);  // "PSONG   MNG   \n"
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(file, songs), 0);
  EXPECT_TRUE(songs.empty());
}

TEST_F(PsongTest, ThirdLineMustBeginWithFile) {
  std::string file = ManagementFile("001", {Song("SONG0001MID")});
  file.replace(file.find("FILE"), 4, "FILX");
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(file, songs), 0);
}

TEST_F(PsongTest, ThreeLinesOrFewerAreRefused) {
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(std::string(kMagic) + "x\r\nFILE001\r\n", songs), 0);
}

TEST_F(PsongTest, HeaderRunningOutBefore80CharactersIsRefused) {
  std::string file = std::string(kMagic) + "x\r\nFILE001\r\n" + std::string(40, 'h') + "\r\n" +
                     std::string(30, 'h') + "\r\n";
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(file, songs), 0);
}

TEST_F(PsongTest, HeaderEndingOnTheLastLineIsRefused) {
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(ManagementFile("000", {}), songs), 0);
}

TEST_F(PsongTest, HeaderLengthsAreCountedUntilAtLeast80) {
  // Three header lines of 30 characters: records start after the third.
  std::vector<TSongNameString> songs;
  ASSERT_EQ(Read(ManagementFile("001", {Song("AFTER   MID")}, 3, 90), songs), 1);
  EXPECT_EQ(Str(songs[0].fileName), "AFTER.MID");
}

TEST_F(PsongTest, EarlyEndReturnsRecordsReadPlusOne) {
  std::vector<TSongNameString> songs;
  std::string file =
      ManagementFile("005", {Song("ONE     MID"), Song("TWO     MID"), Song("THREE   MID")});
  file += "FOUR    MID\r\npartial\r\n";
  EXPECT_EQ(Read(file, songs), 4);
  ASSERT_EQ(songs.size(), 3u);
  EXPECT_EQ(Str(songs[2].fileName), "THREE.MID");
}

TEST_F(PsongTest, RecordsAreAppendedToTheVector) {
  std::vector<TSongNameString> songs(1);
  ASSERT_EQ(Read(ManagementFile("001", {Song("X       MID")}), songs), 1);
  ASSERT_EQ(songs.size(), 2u);
  EXPECT_EQ(Str(songs[1].fileName), "X.MID");
}

TEST_F(PsongTest, CountThatIsNotANumberReadsNothing) {
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(ManagementFile("0x1", {Song("X       MID")}), songs), 0);
  EXPECT_TRUE(songs.empty());
}

TEST_F(PsongTest, NegativeCountReadsNothing) {
  std::vector<TSongNameString> songs;
  EXPECT_EQ(Read(ManagementFile("-12", {Song("X       MID")}), songs), 0);
  EXPECT_EQ(Read(ManagementFile("-1 ", {Song("X       MID")}), songs), 0);
  EXPECT_TRUE(songs.empty());
}

TEST_F(PsongTest, MissingFileGivesMinusOne) {
  std::vector<TSongNameString> songs;
  EXPECT_EQ(GetPsongInfo((image_.SongRoot() + "none").c_str(), songs), -1);
  EXPECT_EQ(GetPsongInfo(nullptr, songs), -1);
}

TEST(CheckUpperLowerTest, LettersAndHighBytes) {
  TSString upper("ABC 12"), lower("abc"), mixed("aB"), none("123 _"),
      high(
          "A\x82"
          "b"),
      highFirst("\x90");
  EXPECT_EQ(CheckUpperLower(upper), 1);
  EXPECT_EQ(CheckUpperLower(lower), 2);
  EXPECT_EQ(CheckUpperLower(mixed), 3);
  EXPECT_EQ(CheckUpperLower(none), 0);
  EXPECT_EQ(CheckUpperLower(high), 3);
  EXPECT_EQ(CheckUpperLower(highFirst), 3);
}

TEST(OldDiskFormatsTest, EmptyOperationsTouchNothing) {
  char buffer[16] = "unchanged";
  std::list<std::string> a, b, c;
  std::list<int> d;
  std::vector<TSongNameString> songs;
  EXPECT_EQ(GetKTVInfo("/nonexistent", nullptr, false), 0);
  EXPECT_EQ(GetPdiskInfo("/nonexistent", buffer), 0);
  EXPECT_EQ(GetPsongInfo("/nonexistent", a), 0);
  EXPECT_EQ(GetPsongInfo("/nonexistent", a, b, d, c), 0);
  EXPECT_EQ(GetPianoDirInfo("/nonexistent", buffer, songs), 0);
  EXPECT_EQ(GetPianoDirInfo("/nonexistent", buffer, a, b), 0);
  EXPECT_EQ(GetPianoDirInfo("/nonexistent", buffer, a), 0);
  EXPECT_EQ(GetPianoDirInfo("/nonexistent", buffer), 0);
  EXPECT_EQ(GetTovikDirInfo("/nonexistent", "/x", songs), 0);
  EXPECT_EQ(CreatePianodirFil("/nonexistent/x", "/x", 3), 0);
  EXPECT_EQ(ChangeTitleMX(TSString("t"), buffer, 16), 0);
  EXPECT_EQ(FixKTVFile("/a", "/b", "t", 0), 0);
  EXPECT_EQ(FixSMFFile("/a", "/b", "t", 1, 2, 0), 0);
  EXPECT_EQ(FixSongFile("/a", "/b", "t", 1, 2, 0), 0);
  EXPECT_STREQ(buffer, "unchanged");
  EXPECT_TRUE(a.empty() && b.empty() && c.empty() && d.empty() && songs.empty());
}

}  // namespace
}  // namespace zansong_test
