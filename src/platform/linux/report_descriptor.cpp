#include "platform/linux/report_descriptor.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace qlx::platform {
namespace {

enum class ItemType : std::uint8_t { kMain = 0, kGlobal = 1, kLocal = 2, kReserved = 3 };

constexpr std::uint8_t kLongItem = 0xFE;
constexpr std::uint8_t kCollection = 0xA;  // main items
constexpr std::uint8_t kEndCollection = 0xC;
constexpr std::uint8_t kUsagePage = 0x0;  // global items
constexpr std::uint8_t kPush = 0xA;
constexpr std::uint8_t kPop = 0xB;
constexpr std::uint8_t kUsage = 0x0;  // local item
constexpr std::uint32_t kApplication = 0x01;

struct Item {
  ItemType type;
  std::uint8_t tag;
  std::size_t size;  ///< of the data, in bytes
  std::uint32_t data;
};

/// Takes the next item off `rest`; nothing at the end, and in the middle of an item.
std::optional<Item> NextItem(std::span<const std::uint8_t>& rest) {
  while (rest.size() >= 3 && rest[0] == kLongItem) {  // none is defined; all are passed over
    const std::size_t whole = 3U + rest[1];
    rest = rest.subspan(std::min(whole, rest.size()));
  }
  if (rest.empty() || rest[0] == kLongItem) return std::nullopt;
  const std::uint8_t prefix = rest[0];
  const std::size_t size = (prefix & 3) == 3 ? 4U : prefix & 3U;
  if (rest.size() < 1 + size) return std::nullopt;
  Item item{static_cast<ItemType>(prefix >> 2 & 3), static_cast<std::uint8_t>(prefix >> 4), size, 0};
  for (std::size_t i = size; i > 0; --i) item.data = item.data << 8 | rest[i];
  rest = rest.subspan(1 + size);
  return item;
}

class Parser {
 public:
  void Take(const Item& item) {
    switch (item.type) {
      case ItemType::kMain:
        TakeMain(item);
        has_usage_ = false;
        break;
      case ItemType::kGlobal:
        TakeGlobal(item);
        break;
      case ItemType::kLocal:
        if (item.tag == kUsage && !std::exchange(has_usage_, true)) usage_ = item;
        break;
      case ItemType::kReserved:
        break;
    }
  }

  std::vector<HidUsage> Found() && { return std::move(found_); }

 private:
  void TakeMain(const Item& item) {
    if (item.tag == kCollection) {
      if (depth_++ == 0 && item.data == kApplication && has_usage_) found_.push_back(Resolved(usage_));
    } else if (item.tag == kEndCollection && depth_ > 0) {
      --depth_;
    }
  }

  void TakeGlobal(const Item& item) {
    if (item.tag == kUsagePage) {
      page_ = static_cast<std::uint16_t>(item.data);
    } else if (item.tag == kPush) {
      pages_.push_back(page_);
    } else if (item.tag == kPop && !pages_.empty()) {
      page_ = pages_.back();
      pages_.pop_back();
    }
  }

  /// A usage of four bytes carries its page in the upper two.
  HidUsage Resolved(const Item& usage) const {
    const auto page = usage.size == 4 ? static_cast<std::uint16_t>(usage.data >> 16) : page_;
    return {page, static_cast<std::uint16_t>(usage.data)};
  }

  std::uint16_t page_ = 0;
  std::vector<std::uint16_t> pages_;
  Item usage_{};  ///< the first since the last main item
  bool has_usage_ = false;
  std::size_t depth_ = 0;
  std::vector<HidUsage> found_;
};

}  // namespace

std::vector<HidUsage> TopLevelUsages(std::span<const std::uint8_t> descriptor) {
  Parser parser;
  while (const auto item = NextItem(descriptor)) parser.Take(*item);
  return std::move(parser).Found();
}

}  // namespace qlx::platform
