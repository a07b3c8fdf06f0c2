#include "platform/xml_limits.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>

#include "platform/xml_dom.h"

namespace qlx::platform {
namespace {

/// The code units of a document as far as they are ASCII, whatever the width of its encoding.
class AsciiUnits {
 public:
  explicit AsciiUnits(std::string_view bytes) : bytes_(bytes) {
    const bool little = bytes.starts_with("\xFF\xFE");
    const bool big = bytes.starts_with("\xFE\xFF");
    width_ = little || big ? 2 : 1;
    low_ = big ? 1 : 0;
  }

  bool wide() const { return width_ == 2; }
  std::size_t size() const { return bytes_.size() / width_; }

  /// Where `unit` stands next from `index` on; size() where it does not.
  std::size_t Find(char unit, std::size_t index) const {
    if (width_ == 1) return std::min(bytes_.find(unit, index), size());
    while (index < size() && (*this)[index] != unit) ++index;
    return index;
  }

  /// 0 where the unit is not ASCII.
  char operator[](std::size_t index) const {
    const std::size_t at = index * width_;
    if (width_ == 2 && bytes_[at + 1 - low_] != 0) return 0;
    return bytes_[at + low_];
  }

 private:
  std::string_view bytes_;
  std::size_t width_ = 1;
  std::size_t low_ = 0;
};

// Where a unit can stand for itself only, so that the counts below cannot be misled. Of IBM's sets, those
// without a prefix here are EBCDIC.
constexpr std::array<std::string_view, 8> kEncodings = {"utf-8",  "us-ascii", "iso-8859-", "windows-125",
                                                        "koi8-r", "ibm437",   "ibm85",     "ibm86"};
constexpr std::size_t kLongestDeclaration = 200;
constexpr std::size_t kLongestMark = 3;  // units that a byte order mark takes

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// The declaration in lower case, empty when there is none; nothing when it does not end where it should.
std::optional<std::string> Declaration(const AsciiUnits& units) {
  std::string start;
  for (std::size_t i = 0; i < std::min(units.size(), kLongestDeclaration); ++i) start += Lower(units[i]);
  if (start.find("<?xml") > kLongestMark) return std::string();
  const std::size_t end = start.find("?>");
  if (end == std::string::npos) return std::nullopt;
  return start.substr(0, end);
}

/// Of XML there are two versions, and the parsers read the first.
bool IsFirstVersion(std::string_view declaration) {
  const std::size_t key = declaration.find("version");
  if (declaration.empty() || key == std::string_view::npos) return true;
  const std::size_t open = declaration.find_first_of("\"'", key);
  return open == std::string_view::npos || declaration.substr(open + 1).starts_with("1.0");
}

bool EncodingIsRead(const AsciiUnits& units) {
  const auto declaration = Declaration(units);
  if (!declaration || !IsFirstVersion(*declaration)) return false;
  const std::size_t key = declaration->find("encoding");
  if (key == std::string::npos) return true;
  if (declaration->find("encoding", key + 1) != std::string::npos) return false;
  const std::size_t open = declaration->find_first_of("\"'", key);
  if (open == std::string::npos) return false;
  const std::string_view encoding = std::string_view(*declaration).substr(open + 1);
  if (units.wide()) return encoding.starts_with("utf-16");
  return std::ranges::any_of(kEncodings, [&](std::string_view known) { return encoding.starts_with(known); });
}

/// Without a mark a wide encoding shows by its zeros, EBCDIC by what its "<?" is here.
bool IsSingleBytes(std::string_view bytes) {
  return bytes.find('\0') == std::string_view::npos && !bytes.starts_with("\x4C\x6F");
}

bool StandsAt(const AsciiUnits& units, std::size_t at, std::string_view text) {
  if (at + text.size() > units.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (units[at + i] != text[i]) return false;
  }
  return true;
}

enum class Entities { kNone, kGeneral, kParameter };

Entities DeclaredEntities(const AsciiUnits& units) {
  constexpr std::string_view kDeclaration = "<!ENTITY";
  Entities declared = Entities::kNone;
  for (std::size_t i = units.Find('<', 0); i < units.size(); i = units.Find('<', i + 1)) {
    if (!StandsAt(units, i, kDeclaration)) continue;
    std::size_t name = i + kDeclaration.size();
    while (name < units.size() && IsBlank(units[name])) ++name;
    if (name < units.size() && units[name] == '%') return Entities::kParameter;
    declared = Entities::kGeneral;
  }
  return declared;
}

/// Of a document that declares entities: the parser appends each one's text in time that grows with the
/// whole.
constexpr int kMostReferences = 1000;

/// Counts attributes and nodes. A "<" can stand in no attribute's value, so each one begins a tag of its own.
class Counter {
 public:
  /// An entity's text may spell a tag with character references, so with entities these count as attributes,
  /// and so does all that looks like one, wherever it stands.
  explicit Counter(bool entities) : entities_(entities) {}

  /// True where nothing counts before the next "<".
  bool SkipsText() const { return !in_tag_ && !entities_; }

  bool WithinLimits() const {
    return attributes_ <= kXmlAttributeLimit && nodes_ <= kXmlNodeLimit && references_ <= kMostReferences;
  }

  void Take(char unit, char next) {
    if (unit == '<') {
      if (next != '/') ++nodes_;
      attributes_ = 0;
      quote_ = 0;
      in_tag_ = next != '!' && next != '?';
    } else if (entities_) {
      if ((IsQuote(unit) && before_ == '=') || (unit == '&' && next == '#')) AddAttribute();
      if (unit == '&' && next != '#') ++references_;
    } else if (in_tag_) {
      TakeInTag(unit);
    }
    if (!IsBlank(unit)) before_ = unit;
  }

 private:
  static bool IsQuote(char unit) { return unit == '"' || unit == '\''; }

  void TakeInTag(char unit) {
    if (quote_ != 0) {
      if (unit == quote_) quote_ = 0;
    } else if (IsQuote(unit)) {
      quote_ = unit;
      if (before_ == '=') AddAttribute();
    } else if (unit == '>') {
      in_tag_ = false;
    }
  }

  void AddAttribute() {
    ++attributes_;
    ++nodes_;
  }

  bool entities_;
  int nodes_ = 0;
  int attributes_ = 0;
  int references_ = 0;
  char before_ = 0;
  char quote_ = 0;
  bool in_tag_ = false;
};

bool CountsAreWithinLimits(const AsciiUnits& units, Entities entities) {
  Counter counter(entities != Entities::kNone);
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (counter.SkipsText()) i = units.Find('<', i);
    if (i == units.size()) break;
    counter.Take(units[i], i + 1 < units.size() ? units[i + 1] : '\0');
    if (!counter.WithinLimits()) return false;
  }
  return true;
}

}  // namespace

bool WithinXmlLimits(std::string_view bytes) {
  const AsciiUnits units(bytes);
  if (units.wide() && bytes.size() % 2 != 0) return false;  // half a unit at the end
  if (!EncodingIsRead(units) || (!units.wide() && !IsSingleBytes(bytes))) return false;
  const Entities entities = DeclaredEntities(units);
  return entities != Entities::kParameter && CountsAreWithinLimits(units, entities);
}

}  // namespace qlx::platform
