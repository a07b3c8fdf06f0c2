#include <gmock/gmock.h>

#include "sim/UnitManager.h"
#include "tests/sim/PlayedServices.h"

namespace qlx::sim {
namespace {

using testing::StartsWith;

/// A caller of the manager's bus interface.
class Caller {
 public:
  Caller() { sd_bus_open_system(&bus_); }
  Caller(const Caller&) = delete;
  Caller& operator=(const Caller&) = delete;
  ~Caller() {
    sd_bus_error_free(&error_);
    sd_bus_flush_close_unref(bus_);
  }

  /// The path that the answer holds, else the name of the bus error.
  template <typename... Text>
  std::string Call(const char* method, Text... arguments) {
    sd_bus_message* reply = nullptr;
    sd_bus_error_free(&error_);
    const int called = sd_bus_call_method(bus_, kName, kPath, kInterface, method, &error_, &reply,
                                          sizeof...(arguments) == 1 ? "s" : "ss", arguments...);
    const char* path = "";
    if (called >= 0) sd_bus_message_read(reply, "o", &path);
    std::string result = called < 0 ? error_.name : path;
    sd_bus_message_unref(reply);
    return result;
  }

  /// Waits for the next JobRemoved and returns its result.
  std::string AwaitJobRemoved() {
    std::string result;
    while (result.empty()) {
      sd_bus_message* message = nullptr;
      const int processed = sd_bus_process(bus_, &message);
      if (processed < 0) return "bus error";
      if (sd_bus_message_is_signal(message, kInterface, "JobRemoved") > 0) {
        const char* text = "";
        sd_bus_message_read(message, "uoss", nullptr, nullptr, nullptr, &text);
        result = text;
      }
      sd_bus_message_unref(message);
      if (processed == 0) sd_bus_wait(bus_, UINT64_MAX);
    }
    return result;
  }

  void Subscribe() {
    sd_bus_match_signal(bus_, nullptr, kName, kPath, kInterface, "JobRemoved", nullptr, nullptr);
  }

 private:
  static constexpr const char* kName = "org.freedesktop.systemd1";
  static constexpr const char* kPath = "/org/freedesktop/systemd1";
  static constexpr const char* kInterface = "org.freedesktop.systemd1.Manager";
  sd_bus* bus_ = nullptr;
  sd_bus_error error_{};
};

constexpr auto kNoSuchUnit = "org.freedesktop.systemd1.NoSuchUnit";
constexpr auto kInvalid = "org.freedesktop.DBus.Error.InvalidArgs";

TEST(UnitManager, KnowsItsUnitsByTheirPath) {
  const PlayedServices played;
  EXPECT_EQ(Caller().Call("GetUnit", "QLXSVC.service"), "/org/freedesktop/systemd1/unit/QLXSVC_2eservice");
}

TEST(UnitManager, LoadsAnUnknownUnitButCannotGetItBefore) {
  const PlayedServices played;
  Caller caller;
  EXPECT_EQ(caller.Call("GetUnit", "other.service"), kNoSuchUnit);
  EXPECT_EQ(caller.Call("LoadUnit", "other.service"), "/org/freedesktop/systemd1/unit/other_2eservice");
}

TEST(UnitManager, AnUnknownUnitCanBeNeitherStartedNorStopped) {
  const PlayedServices played;
  Caller caller;
  EXPECT_EQ(caller.Call("StartUnit", "other.service", "replace"), kNoSuchUnit);
  EXPECT_EQ(caller.Call("StopUnit", "other.service", "replace"), kNoSuchUnit);
}

TEST(UnitManager, NamesAndModesThatSystemdDoesNotKnowAreInvalid) {
  const PlayedServices played;
  Caller caller;
  EXPECT_EQ(caller.Call("LoadUnit", "QLXSVC"), kInvalid);
  EXPECT_EQ(caller.Call("StartUnit", "QLXSVC", "replace"), kInvalid);
  EXPECT_EQ(caller.Call("StartUnit", "QLXSVC.service", "perhaps"), kInvalid);
}

TEST(UnitManager, TellsTheEndOfAJob) {
  const PlayedServices played;
  Caller caller;
  caller.Subscribe();
  EXPECT_THAT(caller.Call("StopUnit", "QLXSVC.service", "replace"),
              StartsWith("/org/freedesktop/systemd1/job/"));
  EXPECT_EQ(caller.AwaitJobRemoved(), "done");
}

TEST(UnitManager, ASecondOneOnTheSameBusIsRefused) {
  const ScratchDirectory directory;
  const BusDaemon bus(directory.path());
  EventLoop loop;
  const UnitManager first(loop, bus.address(), [](const std::string&) {});
  EXPECT_THROW(UnitManager(loop, bus.address(), [](const std::string&) {}), std::system_error);
}

TEST(BusDaemon, LeavesNothingBehind) {
  const ScratchDirectory directory;
  { const BusDaemon bus(directory.path()); }
  EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(BusDaemon, ADirectoryWithUnusualCharactersIsNoObstacle) {
  const ScratchDirectory directory;
  const auto odd = directory.path() / "a, b;c=%d&<e>'\"";
  std::filesystem::create_directory(odd);
  const BusDaemon bus(odd);
  EventLoop loop;
  EXPECT_NO_THROW(UnitManager(loop, bus.address(), [](const std::string&) {}));
}

TEST(BusDaemon, WhyItDidNotStartIsSaid) {
  const ScratchDirectory directory;
  std::filesystem::create_directory(directory.path() / "bus");
  EXPECT_THROW(BusDaemon bus(directory.path()), std::runtime_error);
}

}  // namespace
}  // namespace qlx::sim
