#include "engine/store/log_format.h"

#include <gtest/gtest.h>

#include <cstring>

#include "engine/store/page_checksum.h"

namespace engine::store {
namespace {

TEST(PageChecksum, SeesEveryFlippedBitButThoseOfTheMark) {
  constexpr std::size_t size = 4096;
  std::array<unsigned char, size> page{};
  for (std::size_t i = 0; i < size; ++i) page[i] = static_cast<unsigned char>(i * 7 + i / 256);
  for (const std::uint32_t number : {1U, 2U, 70000U}) {
    storeChecksum(page.data(), size, pageChecksum(page.data(), size, number));
    for (std::size_t byte = 0; byte < size; ++byte) {
      const int bit = static_cast<int>(byte % 8);
      page[byte] = static_cast<unsigned char>(page[byte] ^ (1 << bit));
      const bool same = storedChecksum(page.data(), size) == pageChecksum(page.data(), size, number);
      const bool mark = number == 1 && byte >= markOffset && byte < markOffset + markSize;
      ASSERT_EQ(same, mark) << byte;
      page[byte] = static_cast<unsigned char>(page[byte] ^ (1 << bit));
    }
    EXPECT_NE(pageChecksum(page.data(), size, number), pageChecksum(page.data(), size, number + 1));
  }
}

TEST(LogFormat, MarksAndSealsComeBack) {
  Mark mark;
  mark.identity = identityOf("0123456789abcdef0123456789abcdef");
  mark.seed = {1, 2, 3, 4, 5, 6, 7, 8};
  mark.count = 123456;
  mark.sum = 0xFEDCBA98;
  for (int flags = 0; flags < 8; ++flags) {
    mark.complete = (flags & 1) != 0;
    mark.inUse = (flags & 2) != 0;
    mark.checksummed = (flags & 4) != 0;
    const auto bytes = encodeMark(mark);
    EXPECT_FALSE(isUnmarked(bytes.data()));
    EXPECT_EQ(encodeMark(decodeMark(bytes.data())), bytes);
    Seal seal = sealBase(mark);
    ASSERT_TRUE(openBase(seal.data()));
    EXPECT_EQ(encodeMark(*openBase(seal.data())), bytes);
    for (unsigned char& byte : seal) {
      byte ^= 4;
      EXPECT_FALSE(openBase(seal.data()));
      byte ^= 4;
    }
  }
}

TEST(LogFormat, HeadsAreReadWholeOrNotAtAll) {
  const std::string family = "0123456789abcdef0123456789abcdef";
  const LogPage page = makeLogPage({2, "Şirket", family}, Mark());
  const std::string text(reinterpret_cast<const char*>(page.data()), page.size());
  const auto head = readLogHead(text);
  ASSERT_TRUE(head);
  EXPECT_EQ(head->version, 2);
  EXPECT_EQ(head->database, "Şirket");
  EXPECT_EQ(head->family, family);
  const std::string old = "ZEMBERA-LOG 1\ndatabase A\nfamily " + family + "\nend\n";
  ASSERT_TRUE(readLogHead(old));
  EXPECT_EQ(readLogHead(old)->version, 1);
  std::string stained = text;
  stained[3000] = 'x';
  for (const std::string& bad :
       {std::string(), std::string("ZEMBERA-LOG 3") + text.substr(13), text.substr(0, 4000), stained,
        old + "x", old.substr(0, old.size() - 2), std::string(8192, 'x'), std::string(8192, '\0')})
    EXPECT_FALSE(readLogHead(bad)) << bad.substr(0, 20);
}

// A log as SQLite writes it: the header's sum goes on into the first frame's, and so on.
TEST(LogFormat, FramesFollowOnlyInTheirOrder) {
  constexpr std::uint32_t size = 512;
  LogShape shape;
  shape.pageSize = size;
  shape.seed = {9, 8, 7, 6, 5, 4, 3, 2};
  shape.sum = {17, 4};
  std::vector<std::array<unsigned char, frameHeaderSize + size>> frames(3);
  FrameSum sum = shape.sum;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    auto& frame = frames[i];
    frame.fill(static_cast<unsigned char>(i + 1));
    std::memcpy(frame.data() + 8, shape.seed.data(), 8);
    sum = addToSum(sum, false, frame.data(), 8);
    sum = addToSum(sum, false, frame.data() + frameHeaderSize, size);
    for (int half = 0; half < 2; ++half)
      for (int byte = 0; byte < 4; ++byte)
        frame[static_cast<std::size_t>(16 + half * 4 + byte)] =
            static_cast<unsigned char>(sum[static_cast<std::size_t>(half)] >> (24 - 8 * byte));
  }
  FrameSum before = shape.sum;
  for (const auto& frame : frames) ASSERT_TRUE(followsOn(shape, frame.data(), before));
  EXPECT_EQ(before, sum);
  before = shape.sum;
  EXPECT_FALSE(followsOn(shape, frames[1].data(), before));
  EXPECT_EQ(before, shape.sum);
  frames[0][frameHeaderSize + 100] ^= 1;
  EXPECT_FALSE(followsOn(shape, frames[0].data(), before));
}

}  // namespace
}  // namespace engine::store
