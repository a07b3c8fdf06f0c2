#include "pages/code_pages.h"

#include <algorithm>
#include <iterator>

#include "config/Message.h"

namespace qlx {
namespace {

constexpr std::wstring_view kGeneric = Translatable(L"Generic");

constexpr std::wstring_view kStandard[] = {
    L"437",  L"858",  L"863",  L"860",  L"865",  kGeneric, L"869",  L"857",          L"864",
    L"867",  L"852",  L"848",  L"866",  L"872",  L"775",   L"861",  L"1250",         L"1251",
    L"1252", L"1253", L"1254", L"1255", L"1256", L"1257",  L"1258", kPrinterDefault,
};

struct NumberedPage {
  std::wstring_view text;
  int number;
};

/// Number 5 is left out on purpose: it is the place of "Generic". The last four are not offered before a
/// printer tells that it has them.
constexpr NumberedPage kNumbers[] = {
    {L"437", 0},   {L"858", 1},   {L"863", 2},   {L"860", 3},   {L"865", 4},   {L"869", 6},   {L"857", 7},
    {L"864", 8},   {L"867", 9},   {L"852", 10},  {L"848", 11},  {L"866", 12},  {L"872", 13},  {L"775", 14},
    {L"861", 15},  {L"1250", 16}, {L"1251", 17}, {L"1252", 18}, {L"1253", 19}, {L"1254", 20}, {L"1255", 21},
    {L"1256", 22}, {L"1257", 23}, {L"1258", 24}, {L"897", 25},  {L"853", 26},  {L"737", 27},  {L"813", 28},
};

}  // namespace

std::span<const std::wstring_view> StandardCodePages() {
  return kStandard;
}

std::optional<int> CodePageNumber(std::wstring_view text) {
  const auto* const found = std::ranges::find(kNumbers, text, &NumberedPage::text);
  return found == std::end(kNumbers) ? std::nullopt : std::optional(found->number);
}

}  // namespace qlx
