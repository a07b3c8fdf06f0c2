#include "pages/LOGSettings.h"

#include "config/Message.h"

namespace qlx {
namespace {

constexpr PageFacts kFacts = {
    .section = L"Logging_Configuration",
    .no_document = Translatable(L"Error loading Log settings!\nExiting program."),
    .edit_not_converted = Translatable(L"Error converting LOG Edit settings!\nExiting program."),
    .choice_not_converted = Translatable(L"Error converting LOG Combo Box settings!\nExiting program."),
    .saved = Translatable(L"Log settings saved."),
};

}  // namespace

LOGSettings::LOGSettings() : PageSettings(kFacts, kRows) {}

}  // namespace qlx
