// How the work on logos ends the program when it cannot go on.
#pragma once

#include <string_view>

#include "config/Message.h"

namespace qlx {

/// What the user reads and what the log says.
struct LogoFailure {
  std::wstring_view message;
  std::string_view place;
  std::string_view line;
};

inline constexpr LogoFailure kNoDataDirectory = {
    Translatable(L"Error getting DAT directory!\nExiting program."), "PRINTERDialog::GetDatDirectory",
    "Error getting DAT directory"};
inline constexpr LogoFailure kNotLoaded = {Translatable(L"Error loading image!\nExiting program."),
                                           "PRINTERDialog::SetXmlDataForLogo", "Error loading image"};
inline constexpr LogoFailure kNotCreated = {Translatable(L"Error creating CImage!\nExiting program."),
                                            "PRINTERDialog::SetXmlDataForLogo", "Error creating CImage"};
inline constexpr LogoFailure kNotSaved = {Translatable(L"Error saving image!\nExiting program."),
                                          "PRINTERDialog::SetXmlDataForLogo", "Error saving image"};
inline constexpr LogoFailure kNotReadToCut = {Translatable(L"Error loading image!\nExiting program."),
                                              "PRINTERDialog::AddLogo", "Error loading image"};
inline constexpr LogoFailure kNotCut = {Translatable(L"Error saving image!\nExiting program."),
                                        "PRINTERDialog::AddLogo", "Error saving image"};
inline constexpr LogoFailure kNotDeleted = {Translatable(L"Error deleting image files!\nExiting program."),
                                            "PRINTERDialog::DeleteTempImages", "Error deleting image files"};

}  // namespace qlx
