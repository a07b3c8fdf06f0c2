#include "sim/EventLoop.h"

#include <system_error>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <time.h>
#include <unistd.h>

namespace qlx::sim {
namespace {

void Check(int result) {
  if (result < 0) throw std::system_error(-result, std::generic_category(), "event loop");
}

/// Calls a copy: the handler may end its own source.
int Call(void* handler) {
  const EventLoop::Handler copy = *static_cast<EventLoop::Handler*>(handler);
  copy();
  return 0;
}

int OnTimer(sd_event_source*, std::uint64_t, void* handler) {
  return Call(handler);
}

int OnDescriptorReady(sd_event_source*, int, std::uint32_t, void* handler) {
  return Call(handler);
}

int OnSignalCaught(sd_event_source*, const signalfd_siginfo*, void* handler) {
  return Call(handler);
}

}  // namespace

EventLoop::EventLoop() {
  Check(sd_event_new(&event_));
  wake_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  Check(wake_ < 0 ? -errno : 0);
  posted_source_ = OnReadable(wake_, [this] { RunPosted(); });
}

EventLoop::~EventLoop() {
  posted_source_ = {};
  close(wake_);
  sd_event_unref(event_);
}

void EventLoop::Run() {
  Check(sd_event_loop(event_));
}

void EventLoop::Stop() {
  Post([this] { sd_event_exit(event_, 0); });
}

void EventLoop::Post(Handler handler) {
  const std::lock_guard hold(posted_lock_);
  posted_.push_back(std::move(handler));
  eventfd_write(wake_, 1);
}

void EventLoop::RunPosted() {
  eventfd_t count = 0;
  eventfd_read(wake_, &count);
  std::vector<Handler> now;
  {
    const std::lock_guard hold(posted_lock_);
    now.swap(posted_);
  }
  for (const Handler& handler : now) handler();
}

EventSource EventLoop::After(std::chrono::milliseconds delay, Handler handler) {
  auto kept = std::make_unique<Handler>(std::move(handler));
  const auto microseconds = static_cast<std::uint64_t>(std::chrono::microseconds(delay).count());
  sd_event_source* source = nullptr;
  Check(sd_event_add_time_relative(event_, &source, CLOCK_MONOTONIC, microseconds, 1, OnTimer, kept.get()));
  return {source, std::move(kept)};
}

EventSource EventLoop::OnReadable(int descriptor, Handler handler) {
  return OnDescriptor(descriptor, EPOLLIN, std::move(handler));
}

EventSource EventLoop::OnWritable(int descriptor, Handler handler) {
  return OnDescriptor(descriptor, EPOLLOUT, std::move(handler));
}

EventSource EventLoop::OnDescriptor(int descriptor, std::uint32_t events, Handler handler) {
  auto kept = std::make_unique<Handler>(std::move(handler));
  sd_event_source* source = nullptr;
  Check(sd_event_add_io(event_, &source, descriptor, events, OnDescriptorReady, kept.get()));
  return {source, std::move(kept)};
}

EventSource EventLoop::OnSignal(int number, Handler handler) {
  auto kept = std::make_unique<Handler>(std::move(handler));
  sd_event_source* source = nullptr;
  Check(sd_event_add_signal(event_, &source, number, OnSignalCaught, kept.get()));
  return {source, std::move(kept)};
}

}  // namespace qlx::sim
