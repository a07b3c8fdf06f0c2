#include "sim/Unit.h"

#include <gmock/gmock.h>

#include "tests/sim/PlayedServices.h"

namespace qlx::sim {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class UnitTest : public testing::Test {
 protected:
  /// What the unit does is said: its states, and each job's end as "job ID RESULT".
  void Make(const UnitBehaviour& behaviour, bool comes_up = true) {
    const Say say = said_.Listener();
    Unit::Events events;
    events.start = [comes_up] { return comes_up; };
    events.state_changed = [this, say] { say(ToText(unit_->state())); };
    events.job_removed = [say](const Unit::Job& job, const char* result) {
      say("job " + std::to_string(job.id) + " " + result);
    };
    unit_.emplace(event_loop_, behaviour, std::move(events));
    loop_.emplace(event_loop_);
  }

  void Enqueue(const Unit::Job& job) {
    loop_->Do([&] { unit_->Enqueue(job); });
  }

  void Release() {
    loop_->Do([this] { unit_->Release(); });
  }

  SaidLines said_;
  EventLoop event_loop_;
  std::optional<Unit> unit_;
  std::optional<LoopThread> loop_;
};

TEST_F(UnitTest, AStartGoesThroughActivating) {
  Make({.stopped = true});
  Enqueue({1, JobKind::kStart});
  ASSERT_TRUE(said_.Await("job 1 done"));
  EXPECT_THAT(said_.All(), ElementsAre("activating", "active", "job 1 done"));
}

TEST_F(UnitTest, AStopGoesThroughDeactivating) {
  Make({});
  Enqueue({1, JobKind::kStop});
  ASSERT_TRUE(said_.Await("job 1 done"));
  EXPECT_THAT(said_.All(), ElementsAre("deactivating", "inactive", "job 1 done"));
}

TEST_F(UnitTest, AStartOfWhatIsActiveIsDoneWithoutAChange) {
  Make({});
  Enqueue({1, JobKind::kStart});
  ASSERT_TRUE(said_.Await("job 1 done"));
  EXPECT_THAT(said_.All(), ElementsAre("job 1 done"));
}

TEST_F(UnitTest, AJobThatWaitsIsReplacedByTheNext) {
  Make({.queue_takes = milliseconds(50)});
  Enqueue({1, JobKind::kStop});
  Enqueue({2, JobKind::kStart});
  ASSERT_TRUE(said_.Await("job 2 done"));
  EXPECT_THAT(said_.All(), ElementsAre("job 1 canceled", "job 2 done"));
}

TEST_F(UnitTest, AnActivatingUnitCanBeStopped) {
  Make({.stopped = true, .hang_starting = true});
  Enqueue({1, JobKind::kStart});
  ASSERT_TRUE(said_.Await("activating"));
  Enqueue({2, JobKind::kStop});
  ASSERT_TRUE(said_.Await("job 2 done"));
  EXPECT_THAT(said_.All(),
              ElementsAre("activating", "job 1 canceled", "deactivating", "inactive", "job 2 done"));
}

TEST_F(UnitTest, AStartDuringTheStopRunsAfterIt) {
  Make({.hang_stopping = true});
  Enqueue({1, JobKind::kStop});
  ASSERT_TRUE(said_.Await("deactivating"));
  Enqueue({2, JobKind::kStart});
  Release();
  ASSERT_TRUE(said_.Await("job 2 done"));
  EXPECT_THAT(said_.All(), ElementsAre("deactivating", "job 1 canceled", "inactive", "activating", "active",
                                       "job 2 done"));
}

TEST_F(UnitTest, AServiceThatCannotComeUpEndsInFailed) {
  Make({.stopped = true}, false);
  Enqueue({1, JobKind::kStart});
  ASSERT_TRUE(said_.Await("job 1 failed"));
  EXPECT_THAT(said_.All(), ElementsAre("activating", "failed", "job 1 failed"));
}

TEST_F(UnitTest, AServiceThatCannotComeUpAtTheBeginningIsFailed) {
  Make({}, false);
  EXPECT_EQ(unit_->state(), ActiveState::kFailed);
}

}  // namespace
}  // namespace qlx::sim
