// Sizes, alignments and member offsets of the structures the library
// exports, compared with the table recorded for each processor in
// exported_layouts.txt.  A program that shares these structures with the
// library must see the same layout; this shows when a change of code,
// compiler flags (64-bit times and file offsets) or processor moves one.
//
// The test prints every line of the current processor, in the table's
// form.  To add a structure, add its line to Layouts() below, run the test
// on each processor (scripts/test.sh, scripts/cross-test.sh armhf and
// arm64) and copy its new lines into the table.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "zansong/zansong.h"

namespace {

// The processor this test was built for, as the table names it.
const char* Architecture() {
#if defined(__x86_64__)
  return "x86_64";
#elif defined(__aarch64__)
  return "arm64";
#elif defined(__arm__) && defined(__ARM_PCS_VFP)
  return "armhf";
#elif defined(__arm__)
  return "armel";
#elif defined(__i386__)
  return "i386";
#else
  return "unknown";
#endif
}

using Layout = std::vector<std::pair<std::string, size_t>>;

// The size and alignment of a structure or class, as "sizeof(S)" and
// "alignof(S)": what a program that creates one (on its stack, say) must
// agree on with the library, also where the members are private.
template <typename T>
Layout Size(const char* name) {
  return {{std::string("sizeof(") + name + ")", sizeof(T)},
          {std::string("alignof(") + name + ")", alignof(T)}};
}

// Size, then the offset of each public member named, as "S.member".  The
// offsets come from offsetof, which the compiler refuses for a type that is
// not standard-layout (-Winvalid-offsetof, an error with -Werror) except
// where that is allowed on purpose (TDBMan below).
template <typename T>
Layout Members(const char* name, std::initializer_list<std::pair<const char*, size_t>> offsets) {
  Layout layout = Size<T>(name);
  for (const auto& offset : offsets)
    layout.emplace_back(std::string(name) + "." + offset.first, offset.second);
  return layout;
}

// ZANSONG_LAYOUT(S, m1, m2, ...): Members of S with the offsets of up to
// 24 members.
#define ZANSONG_MEMBER(t, m) std::pair<const char*, size_t>(#m, offsetof(t, m))
#define ZANSONG_EACH_1(t, m) ZANSONG_MEMBER(t, m)
#define ZANSONG_EACH_2(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_1(t, __VA_ARGS__)
#define ZANSONG_EACH_3(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_2(t, __VA_ARGS__)
#define ZANSONG_EACH_4(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_3(t, __VA_ARGS__)
#define ZANSONG_EACH_5(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_4(t, __VA_ARGS__)
#define ZANSONG_EACH_6(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_5(t, __VA_ARGS__)
#define ZANSONG_EACH_7(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_6(t, __VA_ARGS__)
#define ZANSONG_EACH_8(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_7(t, __VA_ARGS__)
#define ZANSONG_EACH_9(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_8(t, __VA_ARGS__)
#define ZANSONG_EACH_10(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_9(t, __VA_ARGS__)
#define ZANSONG_EACH_11(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_10(t, __VA_ARGS__)
#define ZANSONG_EACH_12(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_11(t, __VA_ARGS__)
#define ZANSONG_EACH_13(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_12(t, __VA_ARGS__)
#define ZANSONG_EACH_14(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_13(t, __VA_ARGS__)
#define ZANSONG_EACH_15(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_14(t, __VA_ARGS__)
#define ZANSONG_EACH_16(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_15(t, __VA_ARGS__)
#define ZANSONG_EACH_17(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_16(t, __VA_ARGS__)
#define ZANSONG_EACH_18(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_17(t, __VA_ARGS__)
#define ZANSONG_EACH_19(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_18(t, __VA_ARGS__)
#define ZANSONG_EACH_20(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_19(t, __VA_ARGS__)
#define ZANSONG_EACH_21(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_20(t, __VA_ARGS__)
#define ZANSONG_EACH_22(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_21(t, __VA_ARGS__)
#define ZANSONG_EACH_23(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_22(t, __VA_ARGS__)
#define ZANSONG_EACH_24(t, m, ...) ZANSONG_MEMBER(t, m), ZANSONG_EACH_23(t, __VA_ARGS__)
#define ZANSONG_COUNT(...)                                                                         \
  ZANSONG_COUNT_(__VA_ARGS__, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, \
                 6, 5, 4, 3, 2, 1, 0)
#define ZANSONG_COUNT_(_1, _2, _3, _4, _5, _6, _7, _8, _9, _10, _11, _12, _13, _14, _15, _16, _17, \
                       _18, _19, _20, _21, _22, _23, _24, n, ...)                                  \
  n
#define ZANSONG_JOIN(a, b) ZANSONG_JOIN_(a, b)
#define ZANSONG_JOIN_(a, b) a##b
#define ZANSONG_LAYOUT(t, ...) \
  Members<t>(#t, {ZANSONG_JOIN(ZANSONG_EACH_, ZANSONG_COUNT(__VA_ARGS__))(t, __VA_ARGS__)})

// TDBMan has a virtual destructor, so it is not standard-layout and offsetof
// is only conditionally supported for it.  GCC gives the offsets all the
// same for a class without virtual bases, and the host reads db, stmt,
// dbPath and usbDbPath itself, so their places are part of the interface.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
Layout DbManLayout() {
  static_assert(std::is_polymorphic<TDBMan>::value,
                "TDBMan is standard-layout now: list it with ZANSONG_LAYOUT");
  return ZANSONG_LAYOUT(TDBMan, db, stmt, dbPath, usbDbPath);
}
#pragma GCC diagnostic pop

// Every exported structure and class, one line each: the offsets of the
// members a program reads and writes itself, the size alone of the classes
// whose data are private.
std::vector<Layout> Layouts() {
  return {
      Size<TSString>("TSString"),
      Size<TSList>("TSList"),
      Size<TSStringList>("TSStringList"),
      Size<TSStringVector>("TSStringVector"),
      Size<TTimeMan>("TTimeMan"),
      DbManLayout(),
      Size<TDBSongMan>("TDBSongMan"),
      Size<SimpleDB>("SimpleDB"),
      Size<TTrackData>("TTrackData"),
      Size<TSmfData>("TSmfData"),
      Size<TWaveData>("TWaveData"),
      ZANSONG_LAYOUT(SongInfo, title, midiPath, audioPath, format, mtime, albumPath, syncId,
                     performer, composer, tags, purchasedDate, genre, coverartPath, length),
      ZANSONG_LAYOUT(TSongPara, format, partMode, title, titleStart, titleEnd, notice, text,
                     longTitle, totalTimeMs, songId, attribute, channelA, channelB, channelNotes),
      ZANSONG_LAYOUT(TSmfEventLocation, position, length, kind),
      ZANSONG_LAYOUT(MP3INF, version, layer, bitrate, samplerate),
      ZANSONG_LAYOUT(ID3TAG, title, artist, album, year, comment, genre),
      ZANSONG_LAYOUT(TDirFileName, value, name, nameUpper),
      ZANSONG_LAYOUT(TSongNameString, type, fileName, title, extra),
  };
}

// name -> value of the table's lines for one processor.  Lines are
// "processor name value"; "#" starts a comment.
std::map<std::string, size_t> Recorded(const std::string& path, const std::string& arch) {
  std::map<std::string, size_t> lines;
  std::ifstream in(path);
  std::string line;
  while (std::getline(in, line)) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string lineArch, name;
    size_t value = 0;
    if (fields >> lineArch >> name >> value && lineArch == arch) lines[name] = value;
  }
  return lines;
}

TEST(ExportedLayoutTest, MatchesTheTableOfThisProcessor) {
  const std::string arch = Architecture();
  std::map<std::string, size_t> actual;
  for (const Layout& layout : Layouts()) {
    for (const auto& entry : layout) {
      std::printf("%-7s %-34s %zu\n", arch.c_str(), entry.first.c_str(), entry.second);
      actual[entry.first] = entry.second;
    }
  }
  const std::map<std::string, size_t> recorded = Recorded(ZANSONG_EXPORTED_LAYOUTS, arch);
  ASSERT_FALSE(recorded.empty()) << "no lines for " << arch << " in " << ZANSONG_EXPORTED_LAYOUTS
                                 << ": record the lines printed above";
  for (const auto& entry : actual) {
    auto found = recorded.find(entry.first);
    if (found == recorded.end()) {
      ADD_FAILURE() << entry.first << " is not recorded for " << arch;
    } else {
      EXPECT_EQ(found->second, entry.second) << entry.first << " on " << arch;
    }
  }
  for (const auto& entry : recorded) {
    EXPECT_EQ(actual.count(entry.first), 1u) << entry.first << " is recorded but not exported";
  }
}

}  // namespace
