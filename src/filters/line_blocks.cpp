#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "filters/line_blocks.cpp"
#include "filters/line_blocks.h"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tintwerk::HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Cells are turned in squares of 16 bytes a side, one register a line.
template <class Cell>
constexpr int kSide = 16 / int{sizeof(Cell)};
template <class Cell>
using Lane = hn::FixedTag<Cell, kSide<Cell>>;
template <class Cell>
using Square = hn::Vec<Lane<Cell>>[kSide<Cell>];

template <class Cell>
HWY_INLINE void Transpose(Square<Cell>& square) {
  constexpr int kHalf = kSide<Cell> / 2;
  for (int step = 1; step < kSide<Cell>; step *= 2) {
    Square<Cell> next;
    for (int i = 0; i < kHalf; ++i) {
      next[2 * i] = hn::InterleaveLower(Lane<Cell>(), square[i], square[i + kHalf]);
      next[2 * i + 1] = hn::InterleaveUpper(Lane<Cell>(), square[i], square[i + kHalf]);
    }
    for (int i = 0; i < kSide<Cell>; ++i) square[i] = next[i];
  }
}

template <class Cell>
HWY_INLINE auto TakeCells(const unsigned char* at) {
  return hn::BitCast(Lane<Cell>(), hn::LoadU(hn::FixedTag<std::uint8_t, 16>(), at));
}
template <class Cell>
HWY_INLINE void PutCells(hn::Vec<Lane<Cell>> cells, unsigned char* at) {
  const hn::FixedTag<std::uint8_t, 16> bytes;
  hn::StoreU(hn::BitCast(bytes, cells), bytes, at);
}

template <class Cell>
void Gather(const unsigned char* const* lines, std::int64_t width, unsigned char* block) {
  constexpr int kCells = kSide<Cell>;
  std::int64_t x = 0;
  for (; x + kCells <= width; x += kCells)
    for (int line = 0; line < kBlockLines<Cell>; line += kCells) {
      Square<Cell> square;
      for (int i = 0; i < kCells; ++i)
        square[i] = TakeCells<Cell>(lines[line + i] + sizeof(Cell) * x);
      Transpose<Cell>(square);
      for (int i = 0; i < kCells; ++i)
        PutCells<Cell>(square[i], block + kBlockBytes * (x + i) + sizeof(Cell) * line);
    }
  for (; x < width; ++x)
    for (int line = 0; line < kBlockLines<Cell>; ++line)
      std::memcpy(block + kBlockBytes * x + sizeof(Cell) * line, lines[line] + sizeof(Cell) * x,
                  sizeof(Cell));
}

template <class Cell>
void Scatter(const unsigned char* block, std::int64_t width, unsigned char* const* lines,
             Cell keep) {
  constexpr int kCells = kSide<Cell>;
  const auto kept = hn::Set(Lane<Cell>(), keep);
  std::int64_t x = 0;
  for (; x + kCells <= width; x += kCells)
    for (int line = 0; line < kBlockLines<Cell>; line += kCells) {
      Square<Cell> square;
      for (int i = 0; i < kCells; ++i)
        square[i] = TakeCells<Cell>(block + kBlockBytes * (x + i) + sizeof(Cell) * line);
      Transpose<Cell>(square);
      for (int i = 0; i < kCells; ++i) {
        unsigned char* const at = lines[line + i] + sizeof(Cell) * x;
        PutCells<Cell>(hn::Or(hn::And(TakeCells<Cell>(at), kept), hn::AndNot(kept, square[i])), at);
      }
    }
  for (; x < width; ++x)
    for (int line = 0; line < kBlockLines<Cell>; ++line) {
      unsigned char* const at = lines[line] + sizeof(Cell) * x;
      Cell old, value;
      std::memcpy(&old, at, sizeof(Cell));
      std::memcpy(&value, block + kBlockBytes * x + sizeof(Cell) * line, sizeof(Cell));
      value = Merge(old, value, keep);
      std::memcpy(at, &value, sizeof(Cell));
    }
}

void GatherPixels(const unsigned char* const* lines, std::int64_t width, unsigned char* block) {
  Gather<std::uint32_t>(lines, width, block);
}
void GatherBytes(const unsigned char* const* lines, std::int64_t width, unsigned char* block) {
  Gather<std::uint8_t>(lines, width, block);
}
void ScatterPixels(const unsigned char* block, std::int64_t width, unsigned char* const* lines,
                   std::uint32_t keep) {
  Scatter<std::uint32_t>(block, width, lines, keep);
}
void ScatterBytes(const unsigned char* block, std::int64_t width, unsigned char* const* lines,
                  std::uint8_t keep) {
  Scatter<std::uint8_t>(block, width, lines, keep);
}

}  // namespace tintwerk::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
#include <array>

namespace tintwerk {
namespace {

HWY_EXPORT(GatherPixels);
HWY_EXPORT(GatherBytes);
HWY_EXPORT(ScatterPixels);
HWY_EXPORT(ScatterBytes);

template <class Cell, class Byte>
std::array<Byte*, kBlockLines<Cell>> Lines(Byte* image, std::int64_t width, std::int64_t row,
                                           std::int64_t rows) {
  std::array<Byte*, kBlockLines<Cell>> lines;
  for (std::int64_t i = 0; i < kBlockLines<Cell>; ++i)
    lines[i] = image + std::int64_t{sizeof(Cell)} * width * (row + std::min(i, rows - 1));
  return lines;
}

}  // namespace

template <class Cell>
void GatherRows(const unsigned char* image, std::int64_t width, std::int64_t row, std::int64_t rows,
                unsigned char* block) {
  const auto lines = Lines<Cell>(image, width, row, rows);
  if constexpr (sizeof(Cell) == 4)
    HWY_DYNAMIC_DISPATCH(GatherPixels)(lines.data(), width, block);
  else
    HWY_DYNAMIC_DISPATCH(GatherBytes)(lines.data(), width, block);
}

template <class Cell>
void ScatterRows(const unsigned char* block, unsigned char* image, std::int64_t width,
                 std::int64_t row, std::int64_t rows, Cell keep) {
  const auto lines = Lines<Cell>(image, width, row, rows);
  if constexpr (sizeof(Cell) == 4)
    HWY_DYNAMIC_DISPATCH(ScatterPixels)(block, width, lines.data(), keep);
  else
    HWY_DYNAMIC_DISPATCH(ScatterBytes)(block, width, lines.data(), keep);
}

template void GatherRows<std::uint32_t>(const unsigned char*, std::int64_t, std::int64_t,
                                        std::int64_t, unsigned char*);
template void GatherRows<std::uint8_t>(const unsigned char*, std::int64_t, std::int64_t,
                                       std::int64_t, unsigned char*);
template void ScatterRows(const unsigned char*, unsigned char*, std::int64_t, std::int64_t,
                          std::int64_t, std::uint32_t keep);
template void ScatterRows(const unsigned char*, unsigned char*, std::int64_t, std::int64_t,
                          std::int64_t, std::uint8_t keep);

}  // namespace tintwerk
#endif
