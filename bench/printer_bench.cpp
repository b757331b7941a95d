// The printer: megabytes of text a second, for kinds of objects that stress its different parts.
//
// Each row prints about 1 MB. `MB/s` is the printer's rate; `of_sink` how many times longer it
// takes than sending the same characters one by one through the same sink, and `of_copy` than
// copying them in one piece, both measured in the same run.

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "eval/simplify/simplify.h"
#include "numbers/integer/integer.h"
#include "session/driver.h"
#include "store/constants.h"
#include "store/names.h"
#include "store/objects.h"
#include "text/print/printer.h"

namespace {

using namespace korel;

// A buffer that is filled character by character.
struct Buffer {
  std::vector<char> space;
  std::size_t used = 0;
};

void fill(void* closure, int c) {
  auto* buffer = static_cast<Buffer*>(closure);
  if (buffer->used == buffer->space.size()) buffer->space.resize(2 * buffer->space.size() + 1024);
  buffer->space[buffer->used++] = static_cast<char>(c);
}

void reportFailure(void*, const char* text) { std::fprintf(stderr, "%s\n", text); }

template <class Work>
double secondsOf(Work work) {
  auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void printRepeatedly(benchmark::State& state, DAG object, int width) {
  Buffer buffer, again;
  double printing = 0, sending = 0, copying = 0;
  Sink volatile sink = fill;  // called through a pointer, as the printer does
  for (auto _ : state) {
    buffer.used = again.used = 0;
    printing += secondsOf([&] { PrintKorel(object, sink, reportFailure, width, &buffer, 0); });
    state.PauseTiming();
    Sink send = sink;
    sending += secondsOf([&] {
      for (std::size_t i = 0; i < buffer.used; ++i) send(&again, buffer.space[i]);
    });
    again.space.resize(buffer.space.size());
    copying += secondsOf([&] {
      std::memcpy(again.space.data(), buffer.space.data(), buffer.used);
      benchmark::ClobberMemory();
    });
    state.ResumeTiming();
  }
  double megabytes = static_cast<double>(buffer.used) * static_cast<double>(state.iterations()) / 1e6;
  state.counters["MB"] = static_cast<double>(buffer.used) / 1e6;
  state.counters["MB/s"] = megabytes / printing;
  state.counters["of_sink"] = printing / sending;
  state.counters["of_copy"] = printing / copying;
}

DAG nameNumber(int i) { return naminstall(("v" + std::to_string(i % 997)).c_str()); }

// a*x^i*y - ..., with coefficients of one to five digits.
DAG polynomial(int terms) {
  DAG sum = newl2(static_cast<Word>(2 * terms + 1), SUM);
  for (int i = 0; i < terms; ++i) {
    sum[2 * i + 1] = newObject(PROD, nameNumber(i), Newint(i % 90 + 2), nameNumber(i + 1), cons1);
    sum[2 * i + 2] = Newint((i % 2 == 0 ? 1 : -1) * (i * 37 % 54321 + 2));
  }
  return sum;
}

DAG integerOfDigits(int words) {
  DAG x = newl2(static_cast<Word>(words + 1), INTPOS);
  for (int i = 1; i <= words; ++i) rawField(x, i) = static_cast<Word>(i * 7919 % 9999 + 1);
  return x;
}

DAG nestedCalls(int count) {
  DAG list = newl2(static_cast<Word>(count + 1), EXPSEQ);
  for (int i = 1; i <= count; ++i)
    list[i] = newCall(naminstall("f"), {new2(LIST, newSequence({nameNumber(i), strinstall("text \"q\"")})),
                                        new3(EQUATION, nameNumber(i + 3), Newint(i))});
  return new2(LIST, list);
}

void BM_PrintPolynomial(benchmark::State& state) { printRepeatedly(state, polynomial(65000), 0); }
void BM_PrintPolynomialInLines(benchmark::State& state) { printRepeatedly(state, polynomial(65000), 79); }
void BM_PrintLongInteger(benchmark::State& state) { printRepeatedly(state, integerOfDigits(250000), 0); }
void BM_PrintCallsAndStrings(benchmark::State& state) { printRepeatedly(state, nestedCalls(25000), 0); }
BENCHMARK(BM_PrintPolynomial)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrintPolynomialInLines)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrintLongInteger)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PrintCallsAndStrings)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  char program[] = "printer_bench", skipStartFiles[] = "-s";
  char* arguments[] = {program, skipStartFiles, nullptr};
  if (const char* message = InitializeKorel(2, arguments)) {
    std::fprintf(stderr, "%s\n", message);
    return 1;
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
