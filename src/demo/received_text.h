// How the demo shows what a device has sent.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "config/DeviceKind.h"
#include "config/Message.h"

namespace qlx {

/// The lines for one received block: its count, its bytes as text or in hex, and for a cash drawer what its
/// status says. A line may hold line breaks ("\n"). Nothing for an empty block.
std::vector<Message> DescribeReceived(DeviceKind kind, std::span<const std::uint8_t> block, bool hex);

}  // namespace qlx
