#include "workbench/services/output_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace workbench {
namespace {

TEST(OutputQueue, HoldsAWriterBackUntilLinesAreRead) {
  OutputQueue queue;
  constexpr int kLines = 3 * static_cast<int>(OutputQueue::kPendingLines);
  std::thread writer([&] {
    for (int i = 0; i < kLines; ++i) queue.Write(std::to_string(i));
    queue.End();
  });
  std::string line;
  int next = 0;
  while (queue.Read(line, std::chrono::seconds(60)) == OutputQueue::Result::kLine)
    EXPECT_EQ(line, std::to_string(next++));
  writer.join();
  EXPECT_EQ(next, kLines);
  EXPECT_TRUE(queue.Ended());
}

TEST(OutputQueue, LetsAWriterGoThatNobodyReads) {
  OutputQueue queue;
  std::thread writer([&] {
    for (std::size_t i = 0; i < 2 * OutputQueue::kPendingLines; ++i) queue.Write("line");
  });
  queue.Abandon();
  writer.join();
  std::string line;
  EXPECT_FALSE(queue.TryRead(line));
}

}  // namespace
}  // namespace workbench
