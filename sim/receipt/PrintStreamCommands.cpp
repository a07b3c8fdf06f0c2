// The commands that are known, as the public references of ESC/POS printers give them.
#include <algorithm>
#include <iterator>

#include "sim/receipt/PrintStream.h"

namespace qlx::receipt {
namespace {

constexpr char kDle = 0x10;
constexpr char kEsc = 0x1B;
constexpr char kFs = 0x1C;
constexpr char kGs = 0x1D;

}  // namespace

constexpr PrintStream::Command PrintStream::kCommands[] = {
    {'\0', "", 0},
    {'\x07', "", 0},
    {'\t', "", 0, &PrintStream::HorizontalTab},
    {'\n', "", 0, &PrintStream::LineFeed},
    {'\f', "", 0, &PrintStream::FormFeed},
    {'\r', "", 0},
    {'\x18', "", 0},
    {kDle, "\x04", 1},
    {kDle, "\x05", 1},
    {kDle, "\x14\x01", 2},
    {kDle, "\x14\x02", 2},
    {kDle, "\x14\x08", 7},

    {kEsc, "\f", 0},
    {kEsc, " ", 1},
    {kEsc, "!", 1, &PrintStream::SelectMode},
    {kEsc, "$", 2, &PrintStream::MoveAbsolute},
    {kEsc, "%", 1},
    {kEsc, "&", 3, &PrintStream::SkipCharacters},
    {kEsc, "(", 3, &PrintStream::SkipBlock},
    {kEsc, "*", 3, &PrintStream::BitImage},
    {kEsc, "-", 1, &PrintStream::Underline},
    {kEsc, "2", 0, &PrintStream::DefaultSpacing},
    {kEsc, "3", 1, &PrintStream::SetSpacing},
    {kEsc, "=", 1},
    {kEsc, "?", 1},
    {kEsc, "@", 0, &PrintStream::Reset},
    {kEsc, "B", 2},
    {kEsc, "D", 0, &PrintStream::SkipToNul},
    {kEsc, "E", 1, &PrintStream::Embolden},
    {kEsc, "G", 1, &PrintStream::Embolden},
    {kEsc, "J", 1, &PrintStream::FeedDots},
    {kEsc, "K", 1},
    {kEsc, "L", 0},
    {kEsc, "M", 1, &PrintStream::SelectFont},
    {kEsc, "R", 1},
    {kEsc, "S", 0},
    {kEsc, "T", 1},
    {kEsc, "U", 1},
    {kEsc, "V", 1},
    {kEsc, "W", 8},
    {kEsc, "\\", 2, &PrintStream::MoveRelative},
    {kEsc, "a", 1, &PrintStream::SelectAlignment},
    {kEsc, "c", 2},
    {kEsc, "d", 1, &PrintStream::FeedLines},
    {kEsc, "e", 1},
    {kEsc, "i", 0, &PrintStream::FullCut},
    {kEsc, "m", 0, &PrintStream::PartialCut},
    {kEsc, "p", 3},
    {kEsc, "r", 1},
    {kEsc, "t", 1, &PrintStream::SelectTable},
    {kEsc, "u", 1},
    {kEsc, "v", 0},
    {kEsc, "{", 1},

    {kFs, "!", 1},
    {kFs, "&", 0},
    {kFs, "(", 3, &PrintStream::SkipBlock},
    {kFs, "-", 1},
    {kFs, ".", 0},
    {kFs, "C", 1},
    {kFs, "S", 2},
    {kFs, "W", 1},
    {kFs, "g1", 7, &PrintStream::SkipUserData},
    {kFs, "g2", 7},
    {kFs, "p", 2, &PrintStream::PrintLogo},
    {kFs, "q", 1, &PrintStream::DefineLogos},

    {kGs, "!", 1, &PrintStream::SelectSize},
    {kGs, "$", 2},
    {kGs, "(", 3, &PrintStream::Block},
    {kGs, "*", 2, &PrintStream::DefineImage},
    {kGs, "/", 1, &PrintStream::PrintImage},
    {kGs, ":", 0},
    {kGs, "8", 5, &PrintStream::LongBlock},
    {kGs, "B", 1, &PrintStream::Reverse},
    {kGs, "C0", 2},
    {kGs, "C1", 6},
    {kGs, "C2", 2},
    {kGs, "E", 1},
    {kGs, "H", 1, &PrintStream::SetBarText},
    {kGs, "I", 1},
    {kGs, "L", 2, &PrintStream::SetLeftMargin},
    {kGs, "P", 2},
    {kGs, "T", 1},
    {kGs, "V", 1, &PrintStream::CutPaper},
    {kGs, "W", 2, &PrintStream::SetAreaWidth},
    {kGs, "\\", 2},
    {kGs, "^", 3},
    {kGs, "a", 1},
    {kGs, "b", 1},
    {kGs, "c", 0},
    {kGs, "f", 1, &PrintStream::SetBarFont},
    {kGs, "g0", 3},
    {kGs, "g2", 3},
    {kGs, "h", 1, &PrintStream::SetBarHeight},
    {kGs, "j", 1},
    {kGs, "k", 1, &PrintStream::PrintBarCode},
    {kGs, "r", 1},
    {kGs, "v0", 5, &PrintStream::RasterImage},
    {kGs, "w", 1, &PrintStream::SetModuleWidth},
    {kGs, "z0", 2},
};

const PrintStream::Command* PrintStream::FindCommand(std::string_view bytes) {
  const auto* const found =
      std::ranges::find_if(kCommands, [lead = bytes.front(), rest = bytes.substr(1)](const Command& command) {
        return command.lead == lead && rest.starts_with(command.name);
      });
  return found == std::end(kCommands) ? nullptr : found;
}

}  // namespace qlx::receipt
