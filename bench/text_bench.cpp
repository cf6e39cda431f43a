// Costs of the text layer on strings of the sizes the library handles
// (titles, paths, one SQL statement, one CSV line).
#include <benchmark/benchmark.h>

#include <string>

#include "zansong/common/charset.h"
#include "zansong/common/string_list.h"
#include "zansong/common/tsstring.h"

namespace {

// A 60-byte Shift-JIS title with quotes and a trail byte of 0x5C.
std::string SjisTitle() {
  std::string title;
  while (title.size() < 60) title += "It's \x95\x5C\x83\x5C\x93\xFA ";
  return title;
}

void BM_ConcatenatePath(benchmark::State& state) {
  const TSString root("/usr/local/songs/");
  const TSString album("Album 001/");
  const TSString name("Song title 0001.mid");
  for (auto _ : state) {
    TSString path = root + album + name;
    benchmark::DoNotOptimize(path.c_str());
  }
}
BENCHMARK(BM_ConcatenatePath);

void BM_SqlStringSjis(benchmark::State& state) {
  const TSString title(SjisTitle().c_str());
  for (auto _ : state) {
    TSString quoted(title);
    quoted.SQLString(0);
    benchmark::DoNotOptimize(quoted.c_str());
  }
}
BENCHMARK(BM_SqlStringSjis);

void BM_XmlEscape(benchmark::State& state) {
  const TSString text("Tom & Jerry's <best> \"hits\" volume 2");
  for (auto _ : state) {
    TSString escaped(text);
    escaped.XMLEscapeString();
    benchmark::DoNotOptimize(escaped.c_str());
  }
}
BENCHMARK(BM_XmlEscape);

void BM_CsvToStrings(benchmark::State& state) {
  const TSString line(
      "12,\"Song, with comma\",SMF,Recorded Songs/Album 1/s.mid,184000,\"a \"\"b\"\"\"");
  TSStringList fields;
  for (auto _ : state) {
    CSVToStrings(line, &fields);
    benchmark::DoNotOptimize(fields.Count());
  }
}
BENCHMARK(BM_CsvToStrings);

void BM_StringConvSjisToUtf8(benchmark::State& state) {
  const std::string title = SjisTitle();
  for (auto _ : state) {
    TSString converted = StringConv(title.c_str(), "SHIFT-JIS", "UTF-8");
    benchmark::DoNotOptimize(converted.c_str());
  }
}
BENCHMARK(BM_StringConvSjisToUtf8);

}  // namespace

BENCHMARK_MAIN();
