// The configuration file: loading it and reading every section against the bare XML library doing the same,
// and a crash-safe save against the bare system calls. usage: config_file (in a directory of the file system
// to be measured: TMPDIR chooses it)
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <unistd.h>

#include "bench/peak_memory.h"
#include "bench/rounds.h"
#include "config/ConfigDocument.h"
#include "config/schema.h"
#include "platform/text.h"

namespace {

namespace fs = std::filesystem;
using qlx::bench::PeakMemory;
using qlx::bench::Rounds;
using qlx::bench::Seconds;

/// Loads of the small file in one figure: one alone is too short for the clock.
constexpr int kSmallLoads = 200;
constexpr int kSaves = 50;
constexpr std::size_t kLargeBytes = std::size_t{10} << 20;

// What the bare library's user would hold: the same values in the same containers.
struct Element {
  std::wstring name;
  std::wstring text;
  std::map<std::wstring, std::wstring> attributes;
};

void Require(bool holds, const char* what) {
  if (!holds) throw std::runtime_error(what);
}

std::string BytesOf(const fs::path& path) {
  std::string bytes(fs::file_size(path), '\0');
  std::ifstream(path, std::ios::binary).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

std::wstring Wide(const xmlChar* text) {
  return text == nullptr ? std::wstring() : qlx::platform::FromUtf8(reinterpret_cast<const char*>(text));
}

std::vector<Element> ChildrenOf(xmlDoc* document, const xmlNode* section) {
  std::vector<Element> children;
  for (const xmlNode* child = section->children; child != nullptr; child = child->next) {
    if (child->type != XML_ELEMENT_NODE) continue;
    Element& element = children.emplace_back();
    element.name = Wide(child->name);
    xmlChar* text = xmlNodeGetContent(child);
    element.text = Wide(text);
    xmlFree(text);
    for (const xmlAttr* attribute = child->properties; attribute != nullptr; attribute = attribute->next) {
      xmlChar* value = xmlNodeListGetString(document, attribute->children, 1);
      element.attributes[Wide(attribute->name)] = Wide(value);
      xmlFree(value);
    }
  }
  return children;
}

std::size_t ReadBare(const fs::path& path) {
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  const std::string bytes = BytesOf(path);
  xmlDoc* document = xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr, kOptions);
  Require(document != nullptr, "the library cannot read the file");
  xmlXPathContext* context = xmlXPathNewContext(document);
  std::size_t values = 0;
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    const std::string query = "//MZP//" + qlx::platform::ToUtf8(section.name);
    xmlXPathObject* found = xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(query.c_str()), context);
    for (int i = 0; i < found->nodesetval->nodeNr; ++i) {
      values += ChildrenOf(document, found->nodesetval->nodeTab[i]).size();
    }
    xmlXPathFreeObject(found);
  }
  xmlXPathFreeContext(context);
  xmlFreeDoc(document);
  return values;
}

std::unique_ptr<qlx::ConfigDocument> Opened(const fs::path& path) {
  auto document =
      qlx::MakeConfigDocument([](const std::wstring&) { throw std::runtime_error("the save failed"); });
  Require(document->Open(path.wstring(), false), "the tool cannot read the file");
  return document;
}

std::size_t ReadByTool(const fs::path& path) {
  const auto document = Opened(path);
  std::size_t values = 0;
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    values += document->ReadSection(std::wstring(section.name)).size();
  }
  return values;
}

/// The default file, and one of 10 MiB whose surplus is half keys of a section and half elements of others.
void WriteSmall(const fs::path& path) {
  std::ofstream(path) << "<MZP/>";
  const auto document = Opened(path);
  for (const qlx::SectionDefault& section : qlx::Sections()) {
    for (const qlx::SettingDefault& setting : section.settings) {
      const qlx::AttributeMap identity = {{L"PID", L""}, {L"Serial_Number", L""}, {L"VID", L""}};
      document->SetValue(std::wstring(section.name), std::wstring(setting.key), std::wstring(setting.text),
                         setting.usb_identity ? identity : qlx::AttributeMap{});
    }
  }
  document->Save();
}

void WriteLarge(const fs::path& path) {
  std::ofstream file(path);
  file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<MZP>\n";
  for (const char* section : {"Ports_Configuration", "Logging_Configuration", "MSR_Configuration",
                              "IB_Configuration", "Printer_Configuration", "Elsewhere"}) {
    file << "  <" << section << ">\n";
    for (std::size_t written = 0, i = 0; written < kLargeBytes / 6; written += 70, ++i) {
      file << "    <Key" << i % 100 << " PID=\"0x0001\" VID=\"0x1209\">the value of a key " << i << "</Key"
           << i % 100 << ">\n";
    }
    file << "  </" << section << ">\n";
  }
  file << "</MZP>\n";
}

bool Loads(const fs::path& path, const char* title, int loads) {
  Require(ReadBare(path) == ReadByTool(path), "the two readers disagree");
  const auto milliseconds = [loads](auto&& read) {
    return Seconds([&] {
             for (int i = 0; i < loads; ++i) read();
           }) *
           1000 / loads;
  };
  Rounds rounds(title, "ms");
  rounds.Add("bare XML library", [&] { return milliseconds([&] { ReadBare(path); }); })
      .Add("ConfigDocument", [&] { return milliseconds([&] { ReadByTool(path); }); });
  rounds.Run(9);
  return rounds.AtMost(1.5, "ConfigDocument", "bare XML library");
}

bool Memory(const fs::path& path) {
  Rounds rounds("Peak memory of loading and reading 10 MiB", "MiB");
  rounds.Add("bare XML library", [&] { return PeakMemory([&] { ReadBare(path); }); })
      .Add("ConfigDocument", [&] { return PeakMemory([&] { ReadByTool(path); }); });
  rounds.Run(5);
  return rounds.AtMost(2, "ConfigDocument", "bare XML library");
}

/// write, fsync, rename, fsync of the directory: what no crash-safe save can do without.
void SaveBare(const fs::path& target, const std::string& bytes) {
  const std::string beside = target.native() + ".floor";
  const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  const bool written = write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
  Require(written && fsync(file) == 0 && close(file) == 0, "the floor cannot write");
  Require(rename(beside.c_str(), target.c_str()) == 0, "the floor cannot rename");
  const int directory = open(target.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  Require(fsync(directory) == 0 && close(directory) == 0, "the floor cannot flush the directory");
}

bool Saves(const fs::path& path) {
  const std::string bytes = BytesOf(path);
  const fs::path floor_path = path.native() + ".copy";
  const auto document = Opened(path);
  document->Save();  // the first save of a run also keeps the backup
  const auto milliseconds = [](auto&& save) {
    return Seconds([&] {
             for (int i = 0; i < kSaves; ++i) save();
           }) *
           1000 / kSaves;
  };
  Rounds rounds("Crash-safe save of the default file", "ms");
  rounds
      .Add("write, fsync, rename, fsync", [&] { return milliseconds([&] { SaveBare(floor_path, bytes); }); })
      .Add("ConfigDocument::Save", [&] { return milliseconds([&] { document->Save(); }); });
  rounds.Run(15);
  return rounds.AtMost(1.15, "ConfigDocument::Save", "write, fsync, rename, fsync");
}

}  // namespace

int main() {
  std::string name = (fs::temp_directory_path() / "qlx-config-file-XXXXXX").native();
  const fs::path directory = mkdtemp(name.data());
  const fs::path small = directory / "small.xml";
  const fs::path large = directory / "large.xml";
  WriteSmall(small);
  WriteLarge(large);
  // First: a forked process starts with its parent's peak, which must still be small.
  const bool lean = Memory(large);
  const bool quick = Loads(small, "Load the default file and read every section", kSmallLoads);
  const bool steady = Loads(large, "Load 10 MiB and read every section", 1);
  const bool safe = Saves(small);
  fs::remove_all(directory);
  return quick && steady && lean && safe ? 0 : 1;
}
