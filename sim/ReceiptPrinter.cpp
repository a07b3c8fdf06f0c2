#include "sim/ReceiptPrinter.h"

#include <utility>

namespace qlx::sim {
namespace {

constexpr std::string_view kInformationQuery = "\x1D\x49\x01";
constexpr std::string_view kCodePagesQuery = "\x1D\x4E\x05\x02";
/// Where the data of every answer begins.
constexpr std::size_t kHeader = 18;

/// The query that it answers, then zeros.
std::string Header(std::string_view query) {
  std::string header(query);
  header.resize(kHeader);
  return header;
}

}  // namespace

Reaction ReceiptPrinter::Receive(std::string_view bytes) {
  Reaction reaction{{}, {"printer: " + std::to_string(bytes.size()) + " bytes"}};
  for (const char byte : bytes) {
    paper_ += byte;
    if (paper_.ends_with(kInformationQuery)) {
      paper_.resize(paper_.size() - kInformationQuery.size());
      reaction.answer += DeviceInformation();
      reaction.lines.emplace_back("printer: device information asked for");
    } else if (paper_.ends_with(kCodePagesQuery)) {
      paper_.resize(paper_.size() - kCodePagesQuery.size());
      reaction.answer += CodePageList();
      reaction.lines.emplace_back("printer: code page list asked for");
    }
  }
  return reaction;
}

std::string ReceiptPrinter::TakePaper() {
  return std::exchange(paper_, {});
}

std::string ReceiptPrinter::DeviceInformation() const {
  return Header(kInformationQuery) + '\x01' + static_cast<char>(type_) + "QLXSIM 01.00\r";
}

std::string ReceiptPrinter::CodePageList() const {
  std::string answer = Header(kCodePagesQuery);
  for (const CodePage& page : pages_) {
    answer += static_cast<char>(page.kind);
    answer += static_cast<char>(page.number >> 8);
    answer += static_cast<char>(page.number & 0xFF);
  }
  return answer;
}

}  // namespace qlx::sim
