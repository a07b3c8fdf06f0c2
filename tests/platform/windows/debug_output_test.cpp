#include "platform/debug_output.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/windows/DebuggerChannel.h"

namespace qlx::platform {
namespace {

using test::DebuggerChannel;

TEST(DebugOutput, ALineReachesTheDebuggersChannelAsItStands) {
  DebuggerChannel channel;
  SystemDebugOutput().Write(L"[MZP]: Log Library TCP Port = 38674");
  EXPECT_EQ(channel.LinesOf(GetCurrentProcessId()), "[MZP]: Log Library TCP Port = 38674\n");
}

TEST(DebugOutput, TextIsNeverAFormat) {
  DebuggerChannel channel;
  SystemDebugOutput().Write(L"100 %s %n");
  EXPECT_EQ(channel.LinesOf(GetCurrentProcessId()), "100 %s %n\n");
}

TEST(DebugOutput, OnlyTheLineItselfIsWritten) {
  DebuggerChannel channel;
  SystemDebugOutput().Write(std::wstring_view(L"line and more").substr(0, 4));
  EXPECT_EQ(channel.LinesOf(GetCurrentProcessId()), "line\n");
}

TEST(DebugOutput, ThreadsWriteWholeLines) {
  DebuggerChannel channel;
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) threads.emplace_back([] { SystemDebugOutput().Write(L"whole"); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(channel.LinesOf(GetCurrentProcessId()), "whole\nwhole\nwhole\nwhole\n");
}

TEST(DebugOutput, WithoutAListenerNothingHappens) {
  SystemDebugOutput().Write(L"unheard");
  DebuggerChannel channel;
  EXPECT_EQ(channel.LinesOf(GetCurrentProcessId()), "");
}

}  // namespace
}  // namespace qlx::platform
