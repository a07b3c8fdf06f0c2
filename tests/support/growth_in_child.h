// How much memory a piece of work takes, told by a child process that does nothing else.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qlx::testing {

/// By how much `work` raises the peak that `peak` tells, in its unit. The child has to end well.
template <typename Peak, typename Work>
long GrowthInChild(Peak peak, Work work) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    const long before = peak();
    work();
    const long growth = peak() - before;
    _exit(write(ends[1], &growth, sizeof growth) == sizeof growth ? 0 : 1);
  }
  close(ends[1]);
  long growth = 0;
  EXPECT_EQ(read(ends[0], &growth, sizeof growth), static_cast<ssize_t>(sizeof growth));
  close(ends[0]);
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  return growth;
}

}  // namespace qlx::testing
