// How filters that run along lines get many lines side by side: a block holds a few lines
// interleaved, so that one kernel in vector lanes serves rows and columns alike.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>

#include "frame/parallel.h"
#include "frame/progress.h"

namespace tintwerk {

/// Bytes of a block at each position along its lines.
inline constexpr int kBlockBytes = 32;
/// Columns are read by strips of this many neighbouring blocks, so that whole cache lines are used.
inline constexpr int kStripBlocks = 8;
inline constexpr int kStripBytes = kStripBlocks * kBlockBytes;

/// Lines of a block. A cell is what a line has at a position: a pixel (std::uint32_t) or one byte
/// of a plane.
template <class Cell>
inline constexpr int kBlockLines = kBlockBytes / int{sizeof(Cell)};

/// Takes up to kBlockLines rows from `row` on into a block. Lines beyond the last row repeat it.
template <class Cell>
void GatherRows(const unsigned char* image, std::int64_t width, std::int64_t row, std::int64_t rows,
                unsigned char* block);

/// Puts a block back into its rows.
/// @param keep the bits of a cell that stay as they are in the image
template <class Cell>
void ScatterRows(const unsigned char* block, unsigned char* image, std::int64_t width,
                 std::int64_t row, std::int64_t rows, Cell keep);

/// Asks for bytes that will be read and written soon. Columns are far apart in memory, out of sight
/// of the processor's own prefetching.
inline void Prefetch(const unsigned char* at, std::int64_t bytes) {
#if defined(__GNUC__)
  for (std::int64_t i = 0; i < bytes; i += 64) __builtin_prefetch(at + i, 1);
#endif
}

/// The same for the row of a strip that comes a few rows later.
inline void PrefetchColumns(const unsigned char* columns, std::int64_t rowBytes,
                            std::int64_t rowsLeft) {
  constexpr int kRowsAhead = 8;
  if (rowsLeft > kRowsAhead) Prefetch(columns + rowBytes * kRowsAhead, kStripBytes);
}

/// Copies `bytes` of neighbouring columns into the blocks of a strip, which lie `blockSize` bytes
/// apart.
inline void GatherColumns(const unsigned char* columns, std::int64_t rowBytes, std::int64_t height,
                          std::int64_t bytes, unsigned char* blocks, std::int64_t blockSize) {
  for (std::int64_t y = 0; y < height; ++y, columns += rowBytes, blocks += kBlockBytes) {
    PrefetchColumns(columns, rowBytes, height - y);
    if (bytes == kStripBytes) {
      for (int b = 0; b < kStripBlocks; ++b)
        std::memcpy(blocks + blockSize * b, columns + kBlockBytes * b, kBlockBytes);
    } else {
      for (std::int64_t at = 0; at < bytes; at += kBlockBytes)
        std::memcpy(blocks + blockSize * (at / kBlockBytes), columns + at,
                    std::min<std::int64_t>(kBlockBytes, bytes - at));
    }
  }
}

/// A cell with the bits in `keep` as they were.
template <class Cell>
Cell Merge(Cell old, Cell value, Cell keep) {
  return static_cast<Cell>((old & keep) | (value & ~keep));
}

/// Puts a strip back into its columns.
inline void ScatterColumns(const unsigned char* blocks, std::int64_t blockSize,
                           unsigned char* columns, std::int64_t rowBytes, std::int64_t height,
                           std::int64_t bytes) {
  for (std::int64_t y = 0; y < height; ++y, columns += rowBytes, blocks += kBlockBytes) {
    PrefetchColumns(columns, rowBytes, height - y);
    if (bytes == kStripBytes) {
      for (int b = 0; b < kStripBlocks; ++b)
        std::memcpy(columns + kBlockBytes * b, blocks + blockSize * b, kBlockBytes);
    } else {
      for (std::int64_t at = 0; at < bytes; at += kBlockBytes)
        std::memcpy(columns + at, blocks + blockSize * (at / kBlockBytes),
                    std::min<std::int64_t>(kBlockBytes, bytes - at));
    }
  }
}

/// Working memory of each thread.
class WorkerMemory {
 public:
  /// @param size bytes a thread
  WorkerMemory(int workers, std::int64_t size)
      : workers_(workers),
        size_((size + 63) / 64 * 64),
        memory_(new (std::nothrow) unsigned char[std::size_t(workers) * size_ + 64]()) {}

  bool IsValid() const { return memory_ != nullptr; }
  int Workers() const { return workers_; }
  unsigned char* Of(std::int64_t worker) const {
    const auto address = reinterpret_cast<std::uintptr_t>(memory_.get());
    return memory_.get() + (64 - address % 64) % 64 + size_ * worker;
  }

 private:
  int workers_;
  std::int64_t size_;
  std::unique_ptr<unsigned char[]> memory_;
};

/// Runs body(first, count, memory) for runs of up to `run` of the lines from..from + count - 1, in
/// parallel, each thread with its own memory.
template <class Body>
void ForEachRun(std::int64_t from, std::int64_t count, int run, const WorkerMemory& memory,
                const Body& body) {
  const std::int64_t runs = (count + run - 1) / run;
  const std::int64_t workers = std::min<std::int64_t>(runs, memory.Workers());
  ParallelFor(workers, [&, from, count, run, runs, workers](std::int64_t w) {
    for (std::int64_t i = runs * w / workers; i < runs * (w + 1) / workers; ++i)
      body(from + run * i, std::min<std::int64_t>(run, count - run * i), memory.Of(w));
  });
}

/// Runs body(first, count) over the lines of a serial loop that reports, with those between two
/// reports as one run.
/// @return false if the host wants the work stopped
template <class Body>
bool ForEachSpan(const RowProgress& progress, int lines, const Body& body) {
  for (int from = 0; from < lines;) {
    const int last = progress.NextReport(from, lines);
    body(from, last - from + 1);
    if (!progress.Finished(last)) return false;
    from = last + 1;
  }
  return true;
}

}  // namespace tintwerk
