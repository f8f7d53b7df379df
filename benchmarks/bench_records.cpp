// What samples cost as pieces of memory: their making and deletion, and the room that they take.

#include "benchdata.h"
#include "series/pointthread.h"
#include "series/samplepool_p.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <numeric>
#include <random>
#include <vector>

#include <unistd.h>

namespace {

constexpr int BlockSize = 100000; // records that live at once

/// As a record is made by the library's own memory for it.
struct PooledRecord
{
    static void *make() { return new ChartValue{}; }
    static void destroy(void *record) { delete static_cast<ChartValue *>(record); }
};

/// The same record in the heap.
struct HeapRecord
{
    static void *make() { return ::new ChartValue{}; }
    static void destroy(void *record) { ::delete static_cast<ChartValue *>(record); }
};

/// The order in which records are deleted: that of their making, or any.
std::vector<int> deletionOrder(bool isShuffled)
{
    std::vector<int> order(BlockSize);
    std::iota(order.begin(), order.end(), 0);
    if (isShuffled) {
        std::mt19937 random(1);
        std::shuffle(order.begin(), order.end(), random);
    }
    return order;
}

/// An application that makes a block of samples, and a series that drops it; the argument tells
/// whether in any order.
template <typename Record>
void makeAndDelete(benchmark::State &state)
{
    const std::vector<int> order = deletionOrder(state.range(0) != 0);
    std::vector<void *> records(BlockSize);
    for (auto _ : state) {
        for (void *&record : records) {
            record = Record::make();
        }
        for (int number : order) {
            Record::destroy(records[size_t(number)]);
        }
    }
    state.SetItemsProcessed(state.iterations() * BlockSize);
}
BENCHMARK_TEMPLATE(makeAndDelete, PooledRecord)->ArgName("shuffled")->Arg(0)->Arg(1);
BENCHMARK_TEMPLATE(makeAndDelete, HeapRecord)->ArgName("shuffled")->Arg(0)->Arg(1);

/// A live chart in its steady state: each new sample comes with the deletion of the oldest one.
template <typename Record>
void replaceOldest(benchmark::State &state)
{
    std::vector<void *> records(BlockSize);
    for (void *&record : records) {
        record = Record::make();
    }
    size_t oldest = 0;
    for (auto _ : state) {
        Record::destroy(records[oldest]);
        records[oldest] = Record::make();
        oldest = (oldest + 1) % BlockSize;
    }
    for (void *record : records) {
        Record::destroy(record);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK_TEMPLATE(replaceOldest, PooledRecord);
BENCHMARK_TEMPLATE(replaceOldest, HeapRecord);

/// The memory of this process that is resident, in bytes.
double residentBytes()
{
    long pages = 0;
    FILE *file = std::fopen("/proc/self/statm", "r");
    const bool isRead = file && std::fscanf(file, "%*d %ld", &pages) == 1;
    if (file) {
        std::fclose(file);
    }
    return isRead ? double(pages) * double(sysconf(_SC_PAGESIZE)) : 0.0;
}

/// Not a speed: the bytes that each sample of a feeder takes, record, node and all, as the growth
/// of the resident memory, before and after the first calculation, which makes the index; and what
/// is left of it when they have been cleared. To be run alone
/// (--benchmark_filter): what others have left in the heap is used again and does not count.
void memoryPerSample(benchmark::State &state)
{
    const int count = int(state.range(0));
    double grown = 0.0;
    double indexed = 0.0;
    double left = 0.0;
    for (auto _ : state) {
        BenchModel model;
        BenchSeries *series = model.newSeries();
        const double before = residentBytes();
        for (int i = 0; i < count; ++i) {
            model.addValue(series, new ChartValue{double(i), double(i % 100)});
        }
        grown = residentBytes() - before;
        series->m_pointThread->wait();
        series->m_pointThread->m_rect = QRectF(-2.0, 0.0, 1.0, 1.0); // leaves nothing to keep
        series->m_pointThread->run();
        indexed = residentBytes() - before;
        state.counters["slabs"] = SamplePool::slabCount();
        model.clearValues();
        left = residentBytes() - before;
    }
    state.counters["bytes/sample"] = grown / count;
    state.counters["bytes/sample indexed"] = indexed / count;
    state.counters["bytes/sample left"] = left / count;
    state.counters["slabs left"] = SamplePool::slabCount();
}
BENCHMARK(memoryPerSample)
    ->Arg(1000000)
    ->Arg(10000000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace
