// How the work on logos ends the program when it cannot go on.
#pragma once

#include <string_view>

namespace qlx {

/// What the user reads and what the log says.
struct LogoFailure {
  std::wstring_view message;
  std::string_view place;
  std::string_view line;
};

inline constexpr LogoFailure kNoDataDirectory = {L"Error getting DAT directory!\nExiting program.",
                                                 "PRINTERDialog::GetDatDirectory",
                                                 "Error getting DAT directory"};
inline constexpr LogoFailure kNotLoaded = {L"Error loading image!\nExiting program.",
                                           "PRINTERDialog::SetXmlDataForLogo", "Error loading image"};
inline constexpr LogoFailure kNotCreated = {L"Error creating CImage!\nExiting program.",
                                            "PRINTERDialog::SetXmlDataForLogo", "Error creating CImage"};
inline constexpr LogoFailure kNotSaved = {L"Error saving image!\nExiting program.",
                                          "PRINTERDialog::SetXmlDataForLogo", "Error saving image"};
inline constexpr LogoFailure kNotReadToCut = {L"Error loading image!\nExiting program.",
                                              "PRINTERDialog::AddLogo", "Error loading image"};
inline constexpr LogoFailure kNotCut = {L"Error saving image!\nExiting program.", "PRINTERDialog::AddLogo",
                                        "Error saving image"};
inline constexpr LogoFailure kNotDeleted = {L"Error deleting image files!\nExiting program.",
                                            "PRINTERDialog::DeleteTempImages", "Error deleting image files"};

}  // namespace qlx
