#include "demo/demo_commands.h"

#include "config/Message.h"

namespace qlx {
namespace {

using namespace std::string_view_literals;

// ESC/POS. A hexadecimal escape in a literal goes on as long as digits follow: where a digit or a letter from
// A to F follows as text, the literal is cut.

constexpr std::string_view kText[] = {"\x1F\x10\x04HARLUNE TEST\n\r0123456789"sv};

constexpr std::string_view kOpenDrawers[] = {"\x07\x1B\x07"sv};
constexpr std::string_view kDrawerStatus[] = {"\x06"sv};

constexpr std::string_view kReceipt[] = {
    "\x1B\x61\x01"sv,
    "\x1B\x21\x09\x1D\x21\x35Harlune\n"sv,
    "\x1D\x21\x00\n\n\x1D\x21\x01TICKET STORE\n"sv,
    "\x1D\x21\x00\x1B\x21\x01MMM/DD/YY  HH:MM\n\n"sv,
    "\x1B\x21\x09Store Number:\x1B\x21\x01 8888\n\x1B\x21\x09Seller:\x1B\x21\x01 Your Name\n\n"sv,
    "\x1B\x21\x81"
    "Description\x1B\x21\x01   \x1B\x21\x81No.Items\x1B\x21\x01 \x1B\x21\x81Sub-Total\x1B\x21\x01\n"
    "Computer Harlune    1     \x1B\x21\x09"
    "433.90\n"
    "\x1B\x21\x01Laptop Harlune      1     \x1B\x21\x09"
    "689.70\n"
    "\x1D\x21\x01TOTAL AMOUNT\x1D\x21\x00             \x1D\x21\x01"
    "1123.60"sv,
    "\x1B\x21\x01\x1D\x21\x01\n\n\x1D\x21\x00"
    "CreditCard (####-####-####-####)\n"
    "\x1B\x21\x09\x1D\x21\x01"
    "Amount of Charge\x1D\x21\x00         1123.60\x1B\x21\x01\n\n"sv,
    "(  # sold items:    2  )\n"sv,
    // A bar code: module width 3, height 100, text below in font B, UPC-A data ended by zero.
    "TAXES INCLUDED\n\x1B\x61\x01\x1D\x77\x03\x1D\x68\x64\x1D\x48\x02\x1D\x66\x01\x1D\x6B\x00"
    "750101739438\x00"sv,
    " \x1B\x21\x09This ticket is needed for any return or exchange\n\n"
    "  \x1B\x21\x01THANK YOU FOR YOUR BUSINESS\n\n\x1B\x21\x41\x1D\x21\x11 HARLUNE \n\n"sv,
    "\x0C"sv,
    // Wanted as they stand: alignment, mode and size as they were, bar codes 162 high, without text, font A.
    "\x1B\x61\x00"sv,
    "\x1B\x21\x00"sv,
    "\x1D\x21\x00"sv,
    "\x1D\x68\xA2"sv,
    "\x1D\x48\x00"sv,
    "\x1D\x66\x00"sv,
};
constexpr std::string_view kPrinterStatus[] = {"\x1B\x76"sv};

}  // namespace

DemoCommand FirstDemoCommand(DeviceKind kind) {
  switch (kind) {
    case kLineDisplay:
      return {Translatable(L"<Sending \"HARLUNE TEST<LF><CR>0123456789\">"), kText};
    case kCashDrawer1:
    case kCashDrawer2:
    case kCashDrawerPci:
      return {L"", kOpenDrawers};
    case kPrinter:
      return {L"", kReceipt};
    case kMsr:
    case kIButton:
      break;
  }
  return {};
}

DemoCommand SecondDemoCommand(DeviceKind kind) {
  switch (kind) {
    case kCashDrawer1:
    case kCashDrawer2:
    case kCashDrawerPci:
      return {L"", kDrawerStatus};
    case kPrinter:
      return {L"", kPrinterStatus};
    case kMsr:
    case kLineDisplay:
    case kIButton:
      break;
  }
  return {};
}

}  // namespace qlx
