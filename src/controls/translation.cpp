#include "controls/translation.h"

#include <wx/tokenzr.h>
#include <wx/utils.h>

namespace qlx {
namespace {

constexpr char kDomain[] = "qlxconfig";
constexpr char kEnglish[] = "en";

/// What the environment asks for, best first. The toolkit asks LANGUAGE last and takes a "C" for nothing
/// said; everywhere else it is the other way round.
wxArrayString WantedLanguages() {
  wxString list;
  wxGetEnv("LANGUAGE", &list);
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    wxString value;
    if (!wxGetEnv(name, &value) || value.empty()) continue;
    list += ":" + value;
    break;
  }
  return wxStringTokenize(list, ":");
}

/// "de" for "de_AT.UTF-8" when there is no catalogue for Austria; empty when there is none at all.
wxString Match(const wxString& wanted, const wxArrayString& available) {
  const wxString locale = wanted.BeforeFirst('.').BeforeFirst('@');
  if (locale == "C" || locale == "POSIX") return kEnglish;
  for (const wxString& name : {locale, locale.BeforeFirst('_')}) {
    if (name == kEnglish || available.Index(name) != wxNOT_FOUND) return name;
  }
  return {};
}

/// Where the environment says nothing, as on Windows, the system knows the user's language.
wxString Language(wxTranslations& translations) {
  const wxArrayString available = translations.GetAvailableTranslations(kDomain);
  const wxArrayString wanted = WantedLanguages();
  for (const wxString& language : wanted) {
    const wxString match = Match(language, available);
    if (!match.empty()) return match;
  }
  const wxString best = wanted.empty() ? translations.GetBestTranslation(kDomain, kEnglish) : wxString();
  return best.empty() ? wxString(kEnglish) : best;
}

}  // namespace

void LoadTranslations(const std::wstring& folder) {
  auto* translations = new wxTranslations;  // the toolkit's from here on
  wxTranslations::Set(translations);
  wxFileTranslationsLoader::AddCatalogLookupPathPrefix(folder);
  const wxString language = Language(*translations);
  translations->SetLanguage(language);
  if (language != kEnglish) translations->AddStdCatalog();  // the toolkit's own texts are English
  translations->AddCatalog(kDomain, wxLANGUAGE_ENGLISH);    // the last one is asked first
}

std::wstring Translated(std::wstring_view text) {
  return wxGetTranslation(wxString(std::wstring(text))).ToStdWstring();
}

std::wstring Translated(const Message& message) {
  return message.sentence.empty() ? message.value : Filled(Translated(message.sentence), message.value);
}

wxArrayString Translated(std::span<const char* const> texts) {
  wxArrayString translated;
  translated.Alloc(texts.size());
  for (const char* text : texts) translated.Add(_(text));
  return translated;
}

}  // namespace qlx
