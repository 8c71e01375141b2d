#include "document/shop/RecordCache.h"

#include <gtest/gtest.h>

namespace kvo::shop {
namespace {

class Cache : public testing::Test {
 protected:
  std::int64_t size = 1'000'000;
  std::vector<std::pair<std::int64_t, std::int64_t>> fetches;
  RecordCache cache{[this](std::int64_t first, std::int64_t count) {
    fetches.emplace_back(first, count);
    std::vector<Record> records;
    for (std::int64_t i = first; i < std::min(first + count, size); ++i)
      records.push_back({static_cast<std::int32_t>(i)});
    return records;
  }};

  std::int32_t At(std::int64_t index) {
    const Record* record = cache.At(index);
    return record != nullptr ? *record->at(0).If<std::int32_t>() : -1;
  }
};

TEST_F(Cache, TheFirstScreenIsOnePage) {
  for (int i = 0; i < 100; ++i) EXPECT_EQ(At(i), i);
  ASSERT_EQ(fetches.size(), 1U);
  EXPECT_EQ(fetches[0], std::make_pair(std::int64_t{0}, std::int64_t{128}));
}

TEST_F(Cache, AJumpFetchesOnlyThePageThere) {
  At(0);
  At(128);
  EXPECT_EQ(At(777'777), 777'777);
  EXPECT_EQ(fetches.back(), std::make_pair(std::int64_t{777'777 / 128 * 128}, std::int64_t{128}));
}

TEST_F(Cache, SequentialReadingFetchesLargerPages) {
  for (int i = 0; i < 100'000; ++i) ASSERT_EQ(At(i), i);
  EXPECT_LT(fetches.size(), 60U);
  for (const auto& [first, count] : fetches) EXPECT_LE(count, 2048);
}

TEST_F(Cache, ReadingBackWorksToo) {
  for (int i = 5000; i >= 0; --i) ASSERT_EQ(At(i), i);
}

TEST_F(Cache, RecentRecordsAreNotFetchedAgain) {
  At(0);
  At(10'000);
  At(500'000);
  const std::size_t before = fetches.size();
  At(127);
  At(10'001);
  At(500'001);
  EXPECT_EQ(fetches.size(), before);
}

TEST_F(Cache, HoldsNoMoreThanItsLimit) {
  for (int page = 0; page < 1000; ++page) At(page * 1280);
  int held = 0;
  cache.FindNear(0, [&](const Record&) {
    ++held;
    return false;
  });
  EXPECT_LE(held, 4096);
}

TEST_F(Cache, AfterTheLastRecordThereIsNone) {
  size = 130;
  EXPECT_EQ(At(129), 129);
  EXPECT_EQ(At(130), -1);
  EXPECT_EQ(At(1000), -1);
  EXPECT_EQ(At(-1), -1);
  size = 0;
  EXPECT_EQ(At(5000), -1);
}

TEST_F(Cache, FindsTheNearestMatchAmongCachedRecords) {
  At(0);
  const auto even = [](const Record& record) { return *record[0].If<std::int32_t>() % 50 == 0; };
  EXPECT_EQ(cache.FindNear(70, even), 50);
  EXPECT_EQ(cache.FindNear(80, even), 100);
  EXPECT_EQ(cache.FindNear(80, [](const Record&) { return false; }), std::nullopt);
}

}  // namespace
}  // namespace kvo::shop
