#include "config/Message.h"

namespace qlx {
namespace {

constexpr std::wstring_view kPlace = L"%s";

}  // namespace

std::wstring Filled(std::wstring_view sentence, const std::wstring& value) {
  std::wstring text(sentence);
  const std::size_t place = text.find(kPlace);
  if (place != std::wstring::npos) text.replace(place, kPlace.size(), value);
  return text;
}

std::wstring InEnglish(const Message& message) {
  return message.sentence.empty() ? message.value : Filled(message.sentence, message.value);
}

}  // namespace qlx
