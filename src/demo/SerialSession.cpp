#include "demo/SerialSession.h"

#include <utility>

#include "config/Message.h"

namespace qlx {
namespace {

/// Half a megabyte of blocks: more than a window shows in a second.
constexpr std::size_t kMostEvents = 256;

std::wstring OpenErrorLine(platform::SerialOpenError error) {
  switch (error) {
    case platform::SerialOpenError::kReadEvent:
      return Translatable(L"<Error Creating Read Event>");
    case platform::SerialOpenError::kWriteEvent:
    case platform::SerialOpenError::kStopEvent:  // the same words, on purpose
      return Translatable(L"<Error Creating Write Event>");
    case platform::SerialOpenError::kDevice:
    case platform::SerialOpenError::kTimeouts:
      break;
  }
  return Translatable(L"<Error Opening COM Port>");
}

std::span<const std::uint8_t> Bytes(std::string_view chunk) {
  return {reinterpret_cast<const std::uint8_t*>(chunk.data()), chunk.size()};
}

}  // namespace

SerialSession::SerialSession(SerialLink::OpenPort open_port, std::function<void()> wake,
                             std::function<void()> while_waiting)
    : wake_(std::move(wake)),
      link_(std::move(open_port),
            {[this](std::span<const std::uint8_t> block) {
               if (!block.empty()) AddFromReader(std::vector<std::uint8_t>(block.begin(), block.end()));
             },
             [this](ReadFailure, int) { AddFromReader(Translatable(L"<Error Reading Port>")); }},
            std::move(while_waiting)) {}

bool SerialSession::Open(const std::wstring& port) {
  const auto error = port.empty() ? platform::SerialOpenError::kDevice : link_.Open(port);
  Add(error ? OpenErrorLine(*error) : Translatable(L"<COM Port Opened>"));
  return !error;
}

void SerialSession::Send(const DemoCommand& command) {
  if (!command.announcement.empty()) Add(std::wstring(command.announcement));
  for (const std::string_view chunk : command.chunks) {
    if (stopped_) return;
    if (link_.Write(Bytes(chunk)) == WriteEnd::kFailed) Add(Translatable(L"<Error Writing to Port>"));
  }
}

std::vector<SessionEvent> SerialSession::Take(std::size_t size) {
  std::vector<SessionEvent> taken;
  const std::lock_guard guard(lock_);
  for (std::size_t held = 0; held < size && !events_.empty(); events_.pop_front()) {
    held += std::visit([](const auto& event) { return event.size(); }, events_.front());
    taken.push_back(std::move(events_.front()));
  }
  room_.notify_one();
  return taken;
}

void SerialSession::Stop() {
  {
    const std::lock_guard guard(lock_);
    stopped_ = true;
  }
  room_.notify_one();
  link_.Stop();
}

void SerialSession::Close() {
  Stop();
  link_.Close();
}

void SerialSession::AddFromReader(SessionEvent event) {
  {
    std::unique_lock guard(lock_);
    room_.wait(guard, [this] { return stopped_ || (announced_ && events_.size() < kMostEvents); });
  }
  Add(std::move(event));
}

void SerialSession::Add(SessionEvent event) {
  bool first = false;
  {
    const std::lock_guard guard(lock_);
    first = events_.empty();
    events_.push_back(std::move(event));
    announced_ = true;
  }
  room_.notify_one();
  if (first) wake_();
}

}  // namespace qlx
