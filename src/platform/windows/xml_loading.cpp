#include "platform/windows/xml_loading.h"

#include <cstring>
#include <new>
#include <utility>

#include "platform/windows/xml_document_type.h"
#include "platform/windows/xml_encodings.h"
#include "platform/windows/xml_entities.h"
#include "platform/windows/xml_scanner.h"
#include "platform/windows/xml_structure.h"
#include "platform/xml_limits.h"

namespace qlx::platform {
namespace {

// MSXML 3: the class DOMDocument30, and the interface IXMLDOMDocument2, which takes properties.
constexpr CLSID kDocumentClass = {
    0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};
constexpr IID kDocumentInterface = {
    0x2933BF95, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}};

bool LoadBytes(IXMLDOMDocument2& document, std::string_view bytes) {
  VARIANT source;
  VariantInit(&source);
  source.vt = VT_ARRAY | VT_UI1;
  source.parray = SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(bytes.size()));
  if (source.parray == nullptr) throw std::bad_alloc();
  std::memcpy(source.parray->pvData, bytes.data(), bytes.size());
  VARIANT_BOOL loaded = VARIANT_FALSE;
  const HRESULT result = document.load(source, &loaded);
  VariantClear(&source);
  return result == S_OK && loaded == VARIANT_TRUE;
}

/// A document in the form in which the parser may see it.
struct Prepared {
  std::string text;           ///< its document type without what it declares
  std::string document_type;  ///< whole, empty for none
};

/// The parser would look for what is outside, give attributes and keep entities: it sees the name only.
Prepared WithoutDeclarations(std::string text) {
  XmlScanner scanner(text);
  while (const auto piece = scanner.Next()) {
    if (piece->kind != XmlPieceKind::kDocumentType) continue;
    const std::string type(piece->text);
    const std::string name(XmlDocumentTypeName(type));
    const auto at = static_cast<std::size_t>(piece->text.data() - text.data());
    return {text.replace(at, type.size(), "<!DOCTYPE " + name + ">"), type};
  }
  return {std::move(text), {}};
}

/// Empty when the parser may not see it.
std::optional<Prepared> Prepare(std::string_view bytes) {
  if (!WithinXmlLimits(bytes)) return std::nullopt;
  const auto text = XmlInUtf8(bytes);
  if (!text) return std::nullopt;
  auto expanded = WithXmlEntities(*text);
  const bool taken = expanded && WithinXmlLimits(*expanded) && XmlStructureIsTaken(*expanded);
  return taken ? std::optional(WithoutDeclarations(std::move(*expanded))) : std::nullopt;
}

/// What `type` declares is judged on its own.
bool IsWellFormed(const std::string& type) {
  if (type.empty()) return true;
  const XmlDocumentPtr document = NewXmlDocument();
  return document && LoadBytes(*document, type + "<a/>");
}

}  // namespace

XmlDocumentPtr NewXmlDocument() {
  auto document = Got<IXMLDOMDocument2>([](IXMLDOMDocument2** made) {
    void* object = nullptr;
    const HRESULT result = CoCreateInstance(kDocumentClass, nullptr, CLSCTX_ALL, kDocumentInterface, &object);
    *made = static_cast<IXMLDOMDocument2*>(object);
    return result;
  });
  if (!document) return nullptr;
  document->put_async(VARIANT_FALSE);
  document->put_validateOnParse(VARIANT_FALSE);
  document->put_resolveExternals(VARIANT_FALSE);
  document->put_preserveWhiteSpace(VARIANT_TRUE);
  const Bstr property(L"SelectionLanguage");
  const Bstr language(L"XPath");
  document->setProperty(property.get(), TextVariant(language));
  return document;
}

std::optional<LoadedXml> LoadXml(std::string_view bytes) {
  auto prepared = Prepare(bytes);
  if (!prepared || !IsWellFormed(prepared->document_type)) return std::nullopt;
  auto document = NewXmlDocument();
  if (!document || !LoadBytes(*document, prepared->text)) return std::nullopt;
  return LoadedXml{std::move(document), std::move(prepared->document_type)};
}

}  // namespace qlx::platform
