// Whether a log belongs to its data file and is whole. Runs before SQLite takes a log in, while it keeps
// everybody else out.
#include <algorithm>
#include <cstring>
#include <vector>

#include "engine/catalog/failure.h"
#include "engine/store/layer_files.h"

namespace engine::store {

using lite::failWith;

namespace {

class PairCheck {
 public:
  explicit PairCheck(DataState& data) : data_(data), log_(data.log->real) {}

  void run() {
    readLogPage();
    data_.identity = identityOf(head_.family);
    if (data_.readMark() != SQLITE_OK)
      throw Error(823, "I/O error detected in file '" + data_.path + "'.", 24);
    if (data_.mark.identity != data_.identity) failForeign();
    if (isBlankLogHeader(page_.data() + logOrigin)) return checkEmpty();
    const auto shape = readLogShape(page_.data() + logOrigin);
    if (!shape) failLog("its header at offset " + std::to_string(logOrigin) + " is damaged");
    shape_ = *shape;
    checkFrames();
  }

 private:
  [[noreturn]] void failLog(const std::string& why) const {
    throw Error(9004,
                "An error occurred while processing the log for database '" + data_.database +
                    "'. The log file '" + data_.logPath + "' is damaged: " + why + ".",
                21);
  }
  [[noreturn]] void failForeign() const {
    throw Error(5173, "One or more files do not match the primary file of the database: '" + data_.logPath +
                          "' does not belong to database '" + data_.database + "' in '" + data_.path + "'.");
  }
  [[noreturn]] void failOtherTime() const {
    throw Error(5173,
                "One or more files do not match the primary file of the database: '" + data_.logPath +
                    "' is from another time than '" + data_.path + "' of database '" + data_.database +
                    "'. Copy both files of one time back.",
                16, 2);
  }

  void readLogPage() {
    if (log_.read(page_.data(), page_.size(), 0) != SQLITE_OK) failLog("it is too short");
    const auto head = readLogHead({reinterpret_cast<const char*>(page_.data()), page_.size()});
    const auto base = openBase(page_.data() + baseOffset);
    const auto durable = openDurable(page_.data() + durableOffset);
    if (!head || head->version != 2 || !base || !durable) failLog("its first page is damaged");
    head_ = *head;
    base_ = *base;
    durable_ = *durable;
  }

  // No log: the data file must be whole by itself.
  void checkEmpty() {
    checkLeftOver();
    const bool base = data_.mark.isSameState(base_);
    if (data_.mark.inUse || !data_.mark.complete) failOtherTime();
    checkLength();
    if (base) return;
    // Two files that were closed properly at different times: nothing is missing in either.
    const Seal seal = sealBase(data_.mark);
    if (log_.write(seal.data(), seal.size(), baseOffset) != SQLITE_OK)
      throw Error(823, "I/O error detected in file '" + data_.logPath + "'.", 24);
  }

  // Behind a log that was emptied frames may be left, but only its own.
  void checkLeftOver() const {
    if (log_.size() <= static_cast<std::int64_t>(framesBegin)) return;
    unsigned char frame[frameHeaderSize];
    const bool own = log_.read(frame, sizeof frame, framesBegin) == SQLITE_OK &&
                     std::equal(base_.seed.begin(), base_.seed.end(), frame + 8);
    if (!own) failLog("it holds what is no log");
  }

  void checkLength() const {
    unsigned char header[100];
    const bool read = data_.real.read(header, sizeof header, 0) == SQLITE_OK;
    const std::int64_t wanted = std::int64_t{data_.pageSize} * number32(header + 28);
    if (!read || data_.real.size() < wanted)
      throw Error(823,
                  "I/O error (file is shorter than its header tells) detected in file '" + data_.path + "'.",
                  24);
  }

  void checkFrames() {
    const Mark& mark = data_.mark;
    const bool under = mark.seed == shape_.seed;  // a checkpoint of this log was under way or done
    if (!under && !mark.isSameState(base_)) failOtherTime();
    std::uint32_t wanted = under ? mark.count : 0;
    const bool known = durable_.seed == shape_.seed;
    if (known) wanted = std::max(wanted, durable_.count);
    FrameSum sum = shape_.sum;
    const std::uint32_t whole = wholeFrames(wanted, sum);
    if (whole < wanted) {
      // A log that ends in order, but before what the data file has taken from it, is an older copy.
      if (known && whole >= durable_.count && !isFrame(whole + 1)) failOtherTime();
      failLog("frame " + std::to_string(whole + 1) + " at offset " +
              std::to_string(shape_.frameOffset(whole + 1)) + " does not fit its checksum");
    }
    if (under && !isFrame(mark.count, mark.sum)) failOtherTime();
    if (known && durable_.count != 0 && !isFrame(durable_.count, durable_.sum))
      failLog("its end is not what was written");
  }

  // How many frames stand in unbroken order, up to `wanted`.
  std::uint32_t wholeFrames(std::uint32_t wanted, FrameSum& sum) const {
    const std::size_t size = frameHeaderSize + shape_.pageSize;
    constexpr std::size_t atOnce = 128;
    std::vector<unsigned char> block(size * atOnce);
    for (std::uint32_t done = 0; done < wanted;) {
      const std::size_t count = std::min<std::size_t>(atOnce, wanted - done);
      // A short read leaves zeroes, and zeroes are no frame.
      const int code =
          log_.read(block.data(), size * count, static_cast<std::int64_t>(shape_.frameOffset(done + 1)));
      if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ)
        throw Error(823, "I/O error detected in file '" + data_.logPath + "'.", 24);
      for (std::size_t i = 0; i < count; ++i, ++done)
        if (!followsOn(shape_, block.data() + i * size, sum)) return done;
    }
    return wanted;
  }

  bool isFrame(std::uint32_t number, std::optional<std::uint32_t> sum = {}) const {
    if (number == 0) return true;
    unsigned char frame[frameHeaderSize];
    if (log_.read(frame, sizeof frame, static_cast<std::int64_t>(shape_.frameOffset(number))) != SQLITE_OK)
      return false;
    return std::equal(shape_.seed.begin(), shape_.seed.end(), frame + 8) &&
           (!sum || storedFrameSum(frame)[1] == *sum);
  }

  DataState& data_;
  const RealFile& log_;
  LogPage page_{};
  LogHead head_;
  Mark base_;
  Durable durable_;
  LogShape shape_;
};

}  // namespace

int checkPair(DataState& data) {
  if (!data.log) return SQLITE_OK;
  data.paired = false;
  try {
    PairCheck(data).run();
    data.paired = true;
    return SQLITE_OK;
  } catch (const Error& error) {
    return failWith(SQLITE_CORRUPT, error);
  } catch (const std::bad_alloc&) {
    return SQLITE_NOMEM;
  }
}

}  // namespace engine::store
