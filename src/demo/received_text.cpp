#include "demo/received_text.h"

#include <string_view>

#include "demo/demo_kinds.h"
#include "serial/SerialLink.h"

namespace qlx {
namespace {

constexpr std::size_t kTrackColumns = 51;
constexpr std::size_t kDisplayBytes = 2048;

/// Bytes that stop silently one short of the display buffer, whose last one is the end mark's.
class DisplayBuffer {
 public:
  void Put(std::uint8_t byte) {
    if (bytes_.size() + 1 < kDisplayBytes) bytes_.push_back(byte);
  }
  std::vector<std::uint8_t> End() && {
    bytes_.push_back(0);
    return std::move(bytes_);
  }

 private:
  std::vector<std::uint8_t> bytes_;
};

/// Card data with a line feed after each carriage return, and long tracks broken into lines.
std::vector<std::uint8_t> BreakTracks(std::span<const std::uint8_t> block) {
  DisplayBuffer display;
  std::size_t column = 0;
  for (const std::uint8_t byte : block) {
    display.Put(byte);
    ++column;
    if (byte == '\r') {
      display.Put('\n');
      column = 0;
    } else if (column % kTrackColumns == 0) {
      display.Put('\r');
      display.Put('\n');
    }
  }
  return std::move(display).End();
}

/// Latin-1; a NUL shows as nothing, CR LF and a lone CR as one line break.
std::wstring AsText(std::span<const std::uint8_t> bytes) {
  std::wstring text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool followed_by_line_feed = i + 1 < bytes.size() && bytes[i + 1] == '\n';
    if (bytes[i] == '\r') {
      if (!followed_by_line_feed) text += L'\n';
    } else if (bytes[i] != 0) {
      text += static_cast<wchar_t>(bytes[i]);
    }
  }
  return text;
}

/// One unbroken line, with two blanks before every eighth byte.
std::wstring AsHex(std::span<const std::uint8_t> bytes) {
  constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
  std::wstring text;
  text.reserve(bytes.size() * 4);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) text += i % 8 == 0 ? L"  " : L" ";
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
  }
  return text;
}

const wchar_t* DrawerState(const wchar_t* (&states)[3], bool present, bool open) {
  return states[!present ? 0 : open ? 1 : 2];
}

/// The open bit of drawer 2 comes from the first byte and every other bit from the last, on purpose: drawers
/// answer one byte, and what two-byte answers mean was settled so.
void AddDrawerStatus(std::span<const std::uint8_t> reply, std::vector<Message>& lines) {
  static const wchar_t* drawer1[] = {Translatable(L"<Cash Drawer 1 is Not Present.>"),
                                     Translatable(L"<Cash Drawer 1 is Opened.>"),
                                     Translatable(L"<Cash Drawer 1 is Closed.>")};
  static const wchar_t* drawer2[] = {Translatable(L"<Cash Drawer 2 is Not Present.>"),
                                     Translatable(L"<Cash Drawer 2 is Opened.>"),
                                     Translatable(L"<Cash Drawer 2 is Closed.>")};
  const std::uint8_t first = reply.front();
  const std::uint8_t last = reply.back();
  lines.push_back({DrawerState(drawer1, (last & 0x10) != 0, (last & 0x40) != 0)});
  lines.push_back({DrawerState(drawer2, (last & 0x08) != 0, (first & 0x20) != 0)});
}

}  // namespace

std::vector<Message> DescribeReceived(DeviceKind kind, std::span<const std::uint8_t> block, bool hex) {
  if (block.empty()) return {};
  if (block.size() > kReadBytes) return {{Translatable(L"<Read Buffer Overflow>")}};

  std::vector<Message> lines;
  lines.push_back({Translatable(L"%s Byte(s) Received:"), std::to_wstring(block.size())});
  if (hex) {
    lines.push_back({{}, AsHex(block)});
  } else if (kind == kMsr) {
    lines.push_back({{}, AsText(BreakTracks(block))});
  } else {
    lines.push_back({{}, AsText(block)});
  }
  if (IsCashDrawer(kind)) AddDrawerStatus(block, lines);
  return lines;
}

}  // namespace qlx
