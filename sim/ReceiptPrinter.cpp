#include "sim/ReceiptPrinter.h"

#include <numeric>
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

std::string Nonsense() {
  std::string bytes(256, '\0');
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

}  // namespace

Reaction ReceiptPrinter::Receive(std::string_view bytes) {
  Reaction reaction{{}, {}, {"printer: " + std::to_string(bytes.size()) + " bytes"}};
  for (const char byte : bytes) {
    paper_ += byte;
    if (paper_.ends_with(kInformationQuery)) {
      paper_.resize(paper_.size() - kInformationQuery.size());
      Answer(DeviceInformation(), reaction);
      reaction.lines.emplace_back("printer: device information asked for");
    } else if (paper_.ends_with(kCodePagesQuery)) {
      paper_.resize(paper_.size() - kCodePagesQuery.size());
      Answer(CodePageList(), reaction);
      reaction.lines.emplace_back("printer: code page list asked for");
    }
  }
  return reaction;
}

void ReceiptPrinter::Become(const DescribedPrinter& printer) {
  printer_ = &printer;
  type_ = printer.type;
  pages_.assign(printer.pages.begin(), printer.pages.end());
}

std::string ReceiptPrinter::TakePaper() {
  return std::exchange(paper_, {});
}

void ReceiptPrinter::Answer(const std::string& proper, Reaction& reaction) const {
  if (printer_->manner == AnswerManner::kNone) return;
  const std::string whole = printer_->manner == AnswerManner::kNonsense ? Nonsense() : proper;
  const std::string first = whole.substr(0, printer_->first_burst);
  if (reaction.later.empty()) {
    reaction.answer += first;
  } else {
    reaction.later.push_back(first);
  }
  if (first.size() < whole.size()) reaction.later.push_back(whole.substr(first.size()));
}

std::string ReceiptPrinter::DeviceInformation() const {
  return Header(kInformationQuery) + '\x01' + static_cast<char>(type_) + "QLXSIM 01.00\r";
}

std::string ReceiptPrinter::CodePageList() const {
  std::string answer = Header(kCodePagesQuery);
  do {
    for (const CodePage& page : pages_) {
      answer += static_cast<char>(page.kind);
      answer += static_cast<char>(page.number >> 8);
      answer += static_cast<char>(page.number & 0xFF);
    }
  } while (!pages_.empty() && answer.size() < printer_->list_size);
  if (printer_->list_size != 0) answer.resize(printer_->list_size);
  return answer;
}

}  // namespace qlx::sim
