// The words behind a command, read, and what is said about those that cannot be.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "sim/MsrReader.h"
#include "sim/Refusal.h"
#include "sim/described_printers.h"

namespace qlx::sim {

/// The whole of `text` as a number from `least` to `most`.
std::optional<int> ReadNumber(std::string_view text, int least, int most);
/// The tracks that `text` holds between its bars, or empty when they are too many.
std::optional<Tracks> ReadTracks(const std::string& text);
/// "NUMBER" or "KIND:NUMBER", the kind in hexadecimal.
std::optional<CodePage> ReadCodePage(const std::string& word);

/// The names of all devices, each behind a blank; of all printers.
std::string KindNames();
std::string PrinterNames();

Refusal NoKind(const std::string& word);
Refusal NoPrinter(const std::string& word);
Refusal NoNumber(const std::string& word, int least, int most);

}  // namespace qlx::sim
