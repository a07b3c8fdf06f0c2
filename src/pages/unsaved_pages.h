// Which pages have changes that are not stored, in words.
#pragma once

#include <string>
#include <vector>

#include "config/Message.h"

namespace qlx {

/// For the status line; `pages` are the tabs' texts as the user sees them, in their order.
Message UnsavedMessage(const std::vector<std::wstring>& pages);

}  // namespace qlx
