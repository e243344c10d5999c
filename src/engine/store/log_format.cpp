#include "engine/store/log_format.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>

namespace engine::store {

namespace {

constexpr std::string_view magic = "ZEMBERA-LOG ";
constexpr std::size_t familyLength = 32;
constexpr std::uint32_t completeFlag = 0x80000000U, inUseFlag = 0x40000000U, checksumFlag = 0x20000000U;
constexpr std::uint32_t countBits = 0x1FFFFFFFU;
// Of the head's text in the first format, whose file was no longer.
constexpr std::size_t longestHead = durableOffset;

void put32(unsigned char* bytes, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

std::uint64_t hashOf(const unsigned char* bytes, std::size_t size) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (std::size_t i = 0; i < size; ++i) hash = (hash ^ bytes[i]) * 0x100000001B3U;
  return hash ^ (hash >> 29);
}

constexpr std::size_t checkedSize = sealSize - 8;

void seal(Seal& bytes) {
  const std::uint64_t hash = hashOf(bytes.data(), checkedSize);
  put32(bytes.data() + checkedSize, static_cast<std::uint32_t>(hash >> 32));
  put32(bytes.data() + checkedSize + 4, static_cast<std::uint32_t>(hash));
}

bool isSealed(const unsigned char* bytes) {
  const std::uint64_t hash = hashOf(bytes, checkedSize);
  return number32(bytes + checkedSize) == static_cast<std::uint32_t>(hash >> 32) &&
         number32(bytes + checkedSize + 4) == static_cast<std::uint32_t>(hash);
}

bool isFamily(std::string_view text) {
  return text.size() == familyLength && text.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

// Takes "word value LF" off the front of `rest`.
std::optional<std::string> takeField(std::string_view& rest, std::string_view word) {
  const auto end = rest.find('\n');
  if (end == std::string_view::npos || !rest.starts_with(word)) return std::nullopt;
  std::string value(rest.substr(word.size(), end - word.size()));
  rest.remove_prefix(end + 1);
  return value;
}

}  // namespace

std::uint32_t number32(const unsigned char* bytes) {
  return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
         bytes[3];
}

std::array<unsigned char, markSize> encodeMark(const Mark& mark) {
  std::array<unsigned char, markSize> bytes{};
  put32(bytes.data(), mark.identity);
  std::copy(mark.seed.begin(), mark.seed.end(), bytes.begin() + 4);
  put32(bytes.data() + 12, (mark.count & countBits) | (mark.complete ? completeFlag : 0) |
                               (mark.inUse ? inUseFlag : 0) | (mark.checksummed ? checksumFlag : 0));
  put32(bytes.data() + 16, mark.sum);
  return bytes;
}

Mark decodeMark(const unsigned char* bytes) {
  Mark mark;
  mark.identity = number32(bytes);
  std::copy(bytes + 4, bytes + 12, mark.seed.begin());
  const std::uint32_t count = number32(bytes + 12);
  mark.count = count & countBits;
  mark.complete = (count & completeFlag) != 0;
  mark.inUse = (count & inUseFlag) != 0;
  mark.checksummed = (count & checksumFlag) != 0;
  mark.sum = number32(bytes + 16);
  return mark;
}

bool isUnmarked(const unsigned char* bytes) {
  return std::all_of(bytes, bytes + markSize, [](unsigned char byte) { return byte == 0; });
}

std::uint32_t identityOf(std::string_view family) {
  const std::uint64_t hash = hashOf(reinterpret_cast<const unsigned char*>(family.data()), family.size());
  const auto identity = static_cast<std::uint32_t>(hash ^ (hash >> 32));
  return identity == 0 ? 1 : identity;
}

Seal sealDurable(const Durable& durable) {
  Seal bytes{};
  std::copy(durable.seed.begin(), durable.seed.end(), bytes.begin());
  put32(bytes.data() + 8, durable.count);
  put32(bytes.data() + 12, durable.sum);
  seal(bytes);
  return bytes;
}

Seal sealBase(const Mark& base) {
  Seal bytes{};
  const auto mark = encodeMark(base);
  std::copy(mark.begin(), mark.end(), bytes.begin());
  seal(bytes);
  return bytes;
}

std::optional<Durable> openDurable(const unsigned char* bytes) {
  if (!isSealed(bytes)) return std::nullopt;
  Durable durable;
  std::copy(bytes, bytes + 8, durable.seed.begin());
  durable.count = number32(bytes + 8);
  durable.sum = number32(bytes + 12);
  return durable;
}

std::optional<Mark> openBase(const unsigned char* bytes) {
  if (!isSealed(bytes)) return std::nullopt;
  return decodeMark(bytes);
}

LogPage makeLogPage(const LogHead& head, const Mark& base) {
  LogPage page{};
  const std::string text =
      std::string(magic) + "2\ndatabase " + head.database + "\nfamily " + head.family + "\nend\n";
  std::memcpy(page.data(), text.data(), std::min(text.size(), longestHead));
  const Seal durable = sealDurable({}), start = sealBase(base);
  std::copy(durable.begin(), durable.end(), page.begin() + durableOffset);
  std::copy(start.begin(), start.end(), page.begin() + baseOffset);
  return page;
}

std::optional<LogHead> readLogHead(std::string_view start) {
  LogHead head;
  const bool padded = start.size() >= framesBegin;
  std::string_view rest = start.substr(0, longestHead);
  const auto version = takeField(rest, magic);
  if (!version || (*version != "1" && *version != "2")) return std::nullopt;
  head.version = *version == "1" ? 1 : 2;
  auto database = takeField(rest, "database ");
  auto family = takeField(rest, "family ");
  if (!database || !family || !isFamily(*family) || !takeField(rest, "end")) return std::nullopt;
  head.database = std::move(*database);
  head.family = std::move(*family);
  if (head.version == 1)
    return start.size() < longestHead && rest.empty() ? std::optional(head) : std::nullopt;
  if (!padded || rest.find_first_not_of('\0') != std::string_view::npos) return std::nullopt;
  return head;
}

std::optional<int> newerLogFormat(std::string_view start) {
  start = start.substr(0, longestHead);
  const auto version = takeField(start, magic);
  int number = 0;
  if (!version) return std::nullopt;
  const auto [end, error] = std::from_chars(version->data(), version->data() + version->size(), number);
  const bool whole = error == std::errc() && end == version->data() + version->size();
  return whole && number > logFormat ? std::optional(number) : std::nullopt;
}

// ---- SQLite's log ----

bool isBlankLogHeader(const unsigned char* bytes) {
  return std::all_of(bytes, bytes + logHeaderSize, [](unsigned char byte) { return byte == 0; });
}

FrameSum addToSum(FrameSum sum, bool bigEnd, const unsigned char* bytes, std::size_t size) {
  const bool swapped = bigEnd != (std::endian::native == std::endian::big);
  std::uint32_t first = sum[0], second = sum[1];
  for (std::size_t at = 0; at + 8 <= size; at += 8) {
    std::uint32_t pair[2];
    std::memcpy(pair, bytes + at, sizeof pair);
    if (swapped) pair[0] = __builtin_bswap32(pair[0]), pair[1] = __builtin_bswap32(pair[1]);
    first += pair[0] + second;
    second += pair[1] + first;
  }
  return {first, second};
}

FrameSum storedFrameSum(const unsigned char* frameHeader) {
  return {number32(frameHeader + 16), number32(frameHeader + 20)};
}

std::optional<LogShape> readLogShape(const unsigned char* bytes) {
  constexpr std::uint32_t littleMagic = 0x377F0682U;
  const std::uint32_t found = number32(bytes);
  if ((found & ~1U) != littleMagic) return std::nullopt;
  LogShape shape;
  shape.bigEnd = (found & 1U) != 0;
  shape.pageSize = number32(bytes + 8);
  std::copy(bytes + 16, bytes + 24, shape.seed.begin());
  shape.sum = addToSum({0, 0}, shape.bigEnd, bytes, 24);
  if (shape.sum != FrameSum{number32(bytes + 24), number32(bytes + 28)}) return std::nullopt;
  if (shape.pageSize < 512 || shape.pageSize > 65536 || !std::has_single_bit(shape.pageSize))
    return std::nullopt;
  return shape;
}

bool followsOn(const LogShape& shape, const unsigned char* frame, FrameSum& before) {
  if (!std::equal(shape.seed.begin(), shape.seed.end(), frame + 8) || number32(frame) == 0) return false;
  FrameSum sum = addToSum(before, shape.bigEnd, frame, 8);
  sum = addToSum(sum, shape.bigEnd, frame + frameHeaderSize, shape.pageSize);
  if (sum != storedFrameSum(frame)) return false;
  before = sum;
  return true;
}

}  // namespace engine::store
