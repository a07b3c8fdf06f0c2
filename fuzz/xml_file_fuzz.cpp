// Any bytes as the configuration file: the tool starts on them or ends with a word, and loses none of them.
#include <algorithm>

#include "config/schema.h"
#include "config/start_up.h"
#include "fuzz/MemoryFiles.h"

namespace {

using qlx::ConfigDocument;
using qlx::ConfigNode;
using qlx::DocumentOver;
using qlx::kFuzzedPath;
using qlx::MemoryFiles;
using qlx::Require;

constexpr wchar_t kKey[] = L"Written_By_The_Fuzzer";
constexpr wchar_t kText[] = L"\t<&\">]]>\r\n\u00e9\U0001F5A8 ";

/// What FatalEnd becomes.
struct Ended {};

struct Silent final : qlx::platform::DebugOutput {
  void Write(std::wstring_view) override {}
};

struct ProgramInMemory final : qlx::platform::Program {
  std::optional<std::wstring> PathBesideExecutable(std::wstring_view) const override { return kFuzzedPath; }
  bool IsAbsolutePath(std::wstring_view) const override { return true; }
  std::uint32_t ProcessId() const override { return 1; }
  std::uint32_t ThreadId() const override { return 1; }
  qlx::platform::WallTime Now() const override { return {}; }
};

/// What the parser takes can be written, and read again the same. Whether it takes `bytes`.
bool RequireRoundTrip(std::string_view bytes) {
  const auto dom = qlx::platform::CreateXmlDom();
  if (!dom->Parse(bytes)) return false;
  const std::string once = dom->Serialise();
  if (!dom->CanBeParsedAgain(once)) return true;
  Require(dom->Parse(once));
  Require(dom->Serialise() == once);
  return true;
}

/// Whether the tool starts.
bool Start(ConfigDocument& document) {
  Silent silent;
  try {
    qlx::StartUpLoad(document, ProgramInMemory(), silent, [](const std::wstring&) { throw Ended(); });
  } catch (const Ended&) {
    return false;
  }
  return true;
}

void RequireSections(const ConfigDocument& document) {
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    Require(document.Contains(std::wstring(qlx::kRootElement) + L"//" + std::wstring(section.name)));
  }
}

void WriteEverySection(ConfigDocument& document) {
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    document.SetValue(std::wstring(section.name), kKey, kText, {{L"a", kText}});
  }
}

/// Every section holds what was written into it.
void RequireWritten(ConfigDocument& document) {
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    const auto keys = document.ReadSection(std::wstring(section.name));
    const auto key = std::ranges::find(keys, kKey, &ConfigNode::name);
    Require(key != keys.end() && key->text == kText && key->attributes.at(L"a") == kText);
  }
}

/// The bytes of a file that was there stand in its place or in its copy, whose name tells whether they were
/// read.
void RequireNothingLost(const MemoryFiles& files, const std::string& bytes, const std::wstring& copy) {
  Require(files.files.at(kFuzzedPath) == bytes || files.files.at(kFuzzedPath + copy) == bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::wstring copy = RequireRoundTrip(bytes) ? L".bak" : L".unreadable";
  MemoryFiles files;
  files.files[kFuzzedPath] = bytes;
  // A file that is just within a limit may have no room for what the tool adds.
  ConfigDocument document = DocumentOver(files, true);
  const bool started = Start(document);
  RequireNothingLost(files, bytes, copy);
  if (!started) return 0;
  RequireSections(document);
  WriteEverySection(document);
  if (!document.Save()) return 0;
  RequireNothingLost(files, bytes, copy);
  ConfigDocument next_run = DocumentOver(files, true);
  Require(Start(next_run));
  RequireWritten(next_run);
  return 0;
}
