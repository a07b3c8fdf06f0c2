// spdlog, writing the fields of our log records.
#pragma once

#include <iterator>
#include <memory>
#include <mutex>
#include <utility>

#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/base_sink.h>
#include <spdlog/spdlog.h>

namespace qlx::bench {

/// spdlog's locking and formatting over a given transport.
template <typename Transport>
class TransportSink final : public spdlog::sinks::base_sink<std::mutex> {
 protected:
  void sink_it_(const spdlog::details::log_msg& message) override {
    spdlog::memory_buf_t record;
    formatter_->format(message, record);
    transport_.Send({record.data(), record.size()});
  }
  void flush_() override {}

 private:
  Transport transport_;
};

/// A hexadecimal identifier of at least four digits, which spdlog's own flags do not print.
template <bool kThread>
class HexId final : public spdlog::custom_flag_formatter {
 public:
  void format(const spdlog::details::log_msg& message, const std::tm&, spdlog::memory_buf_t& out) override {
    const auto id = kThread ? message.thread_id : static_cast<std::size_t>(spdlog::details::os::pid());
    fmt::format_to(std::back_inserter(out), "{:04x}", id);
  }
  std::unique_ptr<custom_flag_formatter> clone() const override { return std::make_unique<HexId>(); }
};

/// A logger of module MZP_PRINTER whose records go to a Transport of its own, by `Send(std::string_view)`.
template <typename Transport>
std::shared_ptr<spdlog::logger> Spdlog() {
  auto formatter = std::make_unique<spdlog::pattern_formatter>(spdlog::pattern_time_type::local, "\r\n");
  formatter->add_flag<HexId<false>>('1').add_flag<HexId<true>>('2');
  formatter->set_pattern("%d/%m/%Y %H:%M:%S.%e\tP[%1]\tT[%2]\t%-15n\t%-14l\t%v");
  auto logger = std::make_shared<spdlog::logger>("MZP_PRINTER", std::make_shared<TransportSink<Transport>>());
  logger->set_formatter(std::move(formatter));
  return logger;
}

}  // namespace qlx::bench
