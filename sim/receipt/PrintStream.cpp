#include "sim/receipt/PrintStream.h"

#include <algorithm>
#include <utility>

namespace qlx::receipt {
namespace {

/// These begin commands of two bytes and more.
constexpr std::string_view kLeads = "\x10\x1B\x1C\x1D\x1F";

bool IsText(char byte) {
  return static_cast<unsigned char>(byte) >= 0x20;
}

std::string Hex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if (!text.empty()) text += ' ';
    text += kDigits[value / 16];
    text += kDigits[value % 16];
  }
  return text;
}

}  // namespace

std::optional<PrintOperation> PrintStream::Next() {
  while (!next_ && !rest_.empty()) ReadOne();
  return std::exchange(next_, std::nullopt);
}

void PrintStream::ReadOne() {
  if (IsText(rest_.front())) return ReadText();
  const Command* const command = FindCommand(rest_);
  if (command == nullptr) return ReadUnknown();
  rest_.remove_prefix(1 + command->name.size());
  const Parameters parameters = Take(command->parameters);
  if (parameters.size() == command->parameters && command->read != nullptr)
    (this->*command->read)(parameters);
}

void PrintStream::ReadText() {
  const auto end = std::ranges::find_if_not(rest_, IsText);
  const std::string_view text = Take(static_cast<std::size_t>(end - rest_.begin()));
  next_ = Text{std::string(text), style_, line_spacing_};
}

void PrintStream::ReadUnknown() {
  const std::string_view all = rest_;
  do {
    Take(kLeads.find(rest_.front()) == std::string_view::npos ? 1 : 2);
  } while (!rest_.empty() && !IsText(rest_.front()) && FindCommand(rest_) == nullptr);
  next_ = Note{Hex(all.substr(0, all.size() - rest_.size()))};
}

std::string_view PrintStream::Take(std::size_t count) {
  const std::string_view taken = rest_.substr(0, count);
  rest_.remove_prefix(taken.size());
  return taken;
}

std::string_view PrintStream::TakeUntilNul(std::size_t most) {
  const std::size_t nul = rest_.find('\0');
  if (nul >= most) return Take(most);
  const std::string_view taken = Take(nul);
  Take(1);
  return taken;
}

}  // namespace qlx::receipt
