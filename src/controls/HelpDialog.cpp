#include "controls/HelpDialog.h"

#include <algorithm>
#include <utility>

#include <wx/display.h>
#include <wx/filename.h>
#include <wx/filesys.h>
#include <wx/image.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include "controls/accessible_id.h"
#include "controls/closing_button.h"
#include "controls/message_box.h"
#include "controls/translation.h"
#include "controls/window_icons.h"

namespace qlx {
namespace {

constexpr int kChapters = 1098;
constexpr int kPage = 1099;

// Of a page, in average characters; less where the screen has no room for it.
constexpr int kColumns = 92;
constexpr int kRows = 34;

constexpr const wchar_t* kTitle = Translatable(L"Help: %s");
constexpr const wchar_t* kNotInstalled =
    Translatable(L"The help is not installed: the file\n%s\nis missing or damaged.");

wxString ColourOf(wxSystemColour colour) {
  return wxSystemSettings::GetColour(colour).GetAsString(wxC2S_HTML_SYNTAX);
}

/// The toolkit's pages are black and blue on any ground.
wxString InColoursOfTheDesktop(const std::wstring& html) {
  wxString page = html;
  page.Replace(
      "<body>",
      wxString::Format(R"(<body text="%s" bgcolor="%s" link="%s">)", ColourOf(wxSYS_COLOUR_WINDOWTEXT),
                       ColourOf(wxSYS_COLOUR_WINDOW), ColourOf(wxSYS_COLOUR_HOTLIGHT)),
      false);
  return page;
}

void KnowPictures() {
  if (wxImage::FindHandler(wxBITMAP_TYPE_GIF) == nullptr) wxImage::AddHandler(new wxGIFHandler);
}

}  // namespace

void TellMissing(wxWindow* parent, const std::wstring& path) {
  ShowBox(parent, Translated({kNotInstalled, path}), BoxIcon::kExclamation);
}

HelpDialog::HelpDialog(wxWindow* parent, HelpBook book)
    : wxDialog(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX),
      book_(std::move(book)),
      chapters_(new wxListBox(this, kChapters)),
      page_(new wxHtmlWindow(this, kPage, wxDefaultPosition, wxDefaultSize, wxBORDER_THEME)) {
  TakeParentIcons(*this);
  KnowPictures();
  LayOut();
  BindEvents();
  PublishIds(*this);
}

void HelpDialog::LayOut() {
  for (const Chapter& chapter : book_.chapters) chapters_->Append(chapter.title);
  SetAccessibleName(*chapters_, _("Chapters"));
  page_->SetStandardFonts();
  page_->SetMinSize(PageSize());

  auto* body = new wxBoxSizer(wxHORIZONTAL);
  body->Add(chapters_, wxSizerFlags().Expand().Border(wxRIGHT));
  body->Add(page_, wxSizerFlags(1).Expand());
  auto* frame = new wxBoxSizer(wxVERTICAL);
  frame->Add(body, wxSizerFlags(1).Expand().Border(wxALL));
  frame->Add(MakeClosingButton(*this, _("&Close")),
             wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM));
  SetSizerAndFit(frame);
  CentreOnParent();
  page_->SetFocus();
}

wxSize HelpDialog::PageSize() const {
  constexpr int kShare = 4;  // of the screen; the rest is for what is beside the page
  const wxSize screen = wxDisplay(GetParent()).GetClientArea().GetSize();
  const wxSize most(screen.x - screen.x / kShare, screen.y - screen.y / kShare);
  return {std::min(kColumns * GetCharWidth(), most.x), std::min(kRows * GetCharHeight(), most.y)};
}

void HelpDialog::BindEvents() {
  chapters_->Bind(wxEVT_LISTBOX, [this](wxCommandEvent& event) {
    if (!Open(book_.chapters[static_cast<std::size_t>(event.GetSelection())].name)) SelectShown();
  });
  page_->Bind(wxEVT_HTML_LINK_CLICKED,
              [this](wxHtmlLinkEvent& event) { OpenLink(event.GetLinkInfo().GetHref()); });
  Bind(wxEVT_CHAR_HOOK, [](wxKeyEvent& event) {
    if (event.GetKeyCode() != WXK_F1) event.Skip();  // another book over this one is of no use
  });
}

bool HelpDialog::Open(std::wstring_view name) {
  const auto html = ReadChapter(book_, name);
  if (!html) {
    TellMissing(this, ChapterPath(book_.folder, name));
    return false;
  }
  shown_ = FindChapter(book_, name).value();
  const std::wstring& title = book_.chapters[shown_].title;
  SetTitle(Translated({kTitle, title}));
  page_->GetParser()->GetFS()->ChangePathTo(wxFileSystem::FileNameToURL(wxFileName::DirName(book_.folder)),
                                            true);
  page_->SetPage(InColoursOfTheDesktop(*html));
  SetAccessibleName(*page_, title);
  SetAccessibleDescription(*page_, page_->ToText());
  SelectShown();
  return true;
}

void HelpDialog::OpenLink(const wxString& target) {
  Open(target.BeforeLast('.').ToStdWstring());
}

void HelpDialog::SelectShown() {
  chapters_->SetSelection(static_cast<int>(shown_));
}

}  // namespace qlx
