// The bytes that tie a data file to its log.
//
//   NAME_log.ldf = head zeroes durable base logheader frame*
//   head      = "ZEMBERA-LOG 2" LF "database " name LF "family " 32 hexdigit LF "end" LF
//                              name when the file was made; a rename leaves it. The family is the
//                              database's identity and lies in the data file's zb_meta, too
//   zeroes    =                up to byte 4000
//   durable   = seed count sum zeroes(8) check    32 bytes: so far the log is known to be on the disk
//   base      = mark zeroes(4) check              32 bytes: the data file that the log begins with
//   logheader =                32 bytes, at 4064: SQLite's header of a write-ahead log; zeroes: no frames
//   frame     =                at 4096: frame header (24 bytes) and page, as SQLite writes them
//
//   mark      = identity seed count sum           20 bytes, at byte 72 of the data file
//   identity  = 4 bytes        a hash of the family
//   seed      = 8 bytes        the salts of the log that was last written into the data file
//   count     = 4 bytes        its frames, up to the last commit; the highest three bits are flags
//   sum       = 4 bytes        the last half of the checksum of its last frame
//   check     = 8 bytes        a hash of the 24 bytes before it
//
// Numbers have their high end first. A log belongs to a data file when the data file is its base, or when
// the file's mark names a frame of the log itself (then a checkpoint was under way or had been done).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace engine::store {

constexpr std::size_t markOffset = 72;
constexpr std::size_t markSize = 20;
constexpr std::size_t logOrigin = 4064;  // where SQLite's own log begins
constexpr std::size_t logHeaderSize = 32;
constexpr std::size_t framesBegin = logOrigin + logHeaderSize;
constexpr std::size_t frameHeaderSize = 24;
constexpr int logFormat = 2;
constexpr std::size_t sealSize = 32;  // `durable` and `base`
constexpr std::size_t baseOffset = logOrigin - sealSize;
constexpr std::size_t durableOffset = baseOffset - sealSize;

using Seed = std::array<unsigned char, 8>;

struct Mark {
  std::uint32_t identity = 0;
  Seed seed{};
  std::uint32_t count = 0;
  std::uint32_t sum = 0;
  bool complete = true;      // the data file holds all of the log up to `count`, and nothing else
  bool inUse = false;        // a log with frames has been begun since
  bool checksummed = false;  // its pages carry checksums

  // The same moment of the same database.
  bool isSameState(const Mark& other) const {
    return seed == other.seed && count == other.count && sum == other.sum && complete == other.complete;
  }
};

std::array<unsigned char, markSize> encodeMark(const Mark& mark);
Mark decodeMark(const unsigned char* bytes);
// No mark was ever written: a file of the program's first format.
bool isUnmarked(const unsigned char* bytes);
std::uint32_t identityOf(std::string_view family);

struct Durable {
  Seed seed{};
  std::uint32_t count = 0;
  std::uint32_t sum = 0;
};

using Seal = std::array<unsigned char, sealSize>;
Seal sealDurable(const Durable& durable);
Seal sealBase(const Mark& base);
// Nothing when the check does not hold.
std::optional<Durable> openDurable(const unsigned char* bytes);
std::optional<Mark> openBase(const unsigned char* bytes);

using LogPage = std::array<unsigned char, framesBegin>;
struct LogHead {
  int version = 2;
  std::string database, family;
};
// A log without frames.
LogPage makeLogPage(const LogHead& head, const Mark& base);
// Also of the first format, which held nothing but the head.
std::optional<LogHead> readLogHead(std::string_view start);
// The number of a format that came after ours.
std::optional<int> newerLogFormat(std::string_view start);

// SQLite's log header and frames.
using FrameSum = std::array<std::uint32_t, 2>;
struct LogShape {
  std::uint32_t pageSize = 0;
  bool bigEnd = false;  // of the words that are summed
  Seed seed{};
  FrameSum sum{};  // of the header: the first frame goes on from it

  std::uint64_t frameOffset(std::uint32_t frame) const {  // from 1; in the companion
    return framesBegin + static_cast<std::uint64_t>(frame - 1) * (frameHeaderSize + pageSize);
  }
};
bool isBlankLogHeader(const unsigned char* bytes);
std::optional<LogShape> readLogShape(const unsigned char* bytes);
FrameSum addToSum(FrameSum sum, bool bigEnd, const unsigned char* bytes, std::size_t size);
FrameSum storedFrameSum(const unsigned char* frameHeader);
// Whether the frame goes on from `before`; then `before` becomes its sum.
bool followsOn(const LogShape& shape, const unsigned char* frame, FrameSum& before);

std::uint32_t number32(const unsigned char* bytes);

}  // namespace engine::store
