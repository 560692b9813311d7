// Means along short lines through every sample of a plane, in eight directions.
#pragma once

#include <cstdint>
#include <vector>

namespace tintwerk {

/// Line responses of planes of one size, at a cost that does not depend on the length of the line.
/// An object holds working memory: one for each thread.
///
/// A line of half-length L through a sample has 2 L + 1 samples around it in one direction; the one
/// at its start is left out and the sample itself counts twice. The response is the mean,
/// truncated. Directions turn by 22.5 degrees: 0 is horizontal, 2 runs from the top left to the
/// bottom right, 4 is vertical, 6 runs from the top right to the bottom left, and the odd ones lie
/// between. Lines start at the top, horizontal ones at the left.
class LineResponses {
 public:
  /// Sums have 16 bits.
  static constexpr int kMaxHalfLength = 127;

  /// @param width,height at least 1
  /// @param halfLength   0..kMaxHalfLength
  /// @throws std::bad_alloc
  LineResponses(int width, int height, int halfLength);

  /// Even directions. Samples closer than the half-length to an edge are not written.
  /// @param result another plane
  void LineResponse(const unsigned char* source, unsigned char* result, int direction);

  /// Odd directions: the direction before, in a copy of the plane that is sheared both ways and has
  /// only 0 around it. Every sample is written.
  void SkewedLineResponse(const unsigned char* source, unsigned char* result, int direction);

 private:
  // A plane whose rows lie in a wider one, row y moved to the right by shifts[y].
  struct Slanted {
    const unsigned char* samples;
    int height;
    int fullWidth;
    const std::int32_t* shifts;  // null: none
  };
  void Respond(const Slanted& plane, unsigned char* result, int direction);
  void RespondAcross(const Slanted& plane, unsigned char* result, int slope);
  void RespondAlong(const Slanted& plane, unsigned char* result);
  void StoreMeans(const Slanted& plane, int y, const std::uint16_t* sums, unsigned char* result);

  int width_;
  int height_;
  int halfLength_;
  // Shearing moves the columns of a run down together, the first run by drop_ rows, each next one
  // by one row less and the last one not at all. Only then rows are moved.
  std::vector<std::int32_t> runs_;  // first columns, and the end of the last run
  int drop_;
  std::vector<std::int32_t> shifts_;
  Slanted sheared_;
  std::vector<unsigned char> shearedSource_, shearedResult_;  // 0 stays where nothing gets to
  std::vector<std::uint16_t> sums_;
};

}  // namespace tintwerk
