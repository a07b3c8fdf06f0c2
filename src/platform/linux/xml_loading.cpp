#include "platform/linux/xml_loading.h"

#include <limits>

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include "platform/linux/xml_nodes.h"
#include "platform/xml_dom.h"
#include "platform/xml_limits.h"

namespace qlx::platform {
namespace {

using ParserContext = std::unique_ptr<xmlParserCtxt, XmlDeleter<xmlFreeParserCtxt>>;

/// What the parser passes over without calling the document ill-formed.
struct PassedOver {
  bool external_entity = false;
  bool undeclared_entity = false;
  bool copied_entity = false;
  bool broken_namespace = false;  ///< such as a prefix that nobody declared
  int attributes = 0;             ///< in all, with those that a document type gives
  bool too_many_attributes = false;

  bool any() const {
    return external_entity || undeclared_entity || copied_entity || broken_namespace || too_many_attributes;
  }
};

PassedOver& PassedOverBy(xmlParserCtxt* context) {
  return *static_cast<PassedOver*>(context->_private);
}

xmlParserInput* RefuseExternalEntity(const char*, const char*, xmlParserCtxt* context) {
  if (context != nullptr && context->_private != nullptr) PassedOverBy(context).external_entity = true;
  return nullptr;
}

void NoteError(void* context, xmlError* error) {
  PassedOver& passed_over = PassedOverBy(static_cast<xmlParserCtxt*>(context));
  if (error->code == XML_WAR_UNDECLARED_ENTITY) passed_over.undeclared_entity = true;
  if (error->domain == XML_FROM_NAMESPACE && error->level >= XML_ERR_ERROR)
    passed_over.broken_namespace = true;
}

/// The library bounds the growth of text only: each further use of an entity copies its nodes without bound,
/// so one that holds more than a text may be used once.
xmlEntity* EntityForUse(void* parser, const xmlChar* name) {
  xmlEntity* entity = xmlSAX2GetEntity(parser, name);
  const xmlNode* content = entity == nullptr ? nullptr : entity->children;
  if (content == nullptr || (content->type == XML_TEXT_NODE && content->next == nullptr)) return entity;
  auto* context = static_cast<xmlParserCtxt*>(parser);
  PassedOverBy(context).copied_entity = true;
  xmlStopParser(context);
  return nullptr;
}

/// A short document type can give every element of a document thousands of attributes, each of which the
/// library compares with all others; no count of the bytes foresees that.
void StartElement(void* parser, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaces, const xmlChar** namespace_list, int attributes, int defaulted,
                  const xmlChar** attribute_list) {
  auto* context = static_cast<xmlParserCtxt*>(parser);
  PassedOver& passed_over = PassedOverBy(context);
  passed_over.attributes += attributes;
  if (attributes > kXmlAttributeLimit || passed_over.attributes > kXmlNodeLimit) {
    passed_over.too_many_attributes = true;
    xmlStopParser(context);
    return;
  }
  xmlSAX2StartElementNs(parser, name, prefix, uri, namespaces, namespace_list, attributes, defaulted,
                        attribute_list);
}

/// The loader is one for the whole process, and the toolkit reads its pictures with the same library.
class ScopedEntityLoader {
 public:
  ScopedEntityLoader() { xmlSetExternalEntityLoader(RefuseExternalEntity); }
  ScopedEntityLoader(const ScopedEntityLoader&) = delete;
  ScopedEntityLoader& operator=(const ScopedEntityLoader&) = delete;
  ~ScopedEntityLoader() { xmlSetExternalEntityLoader(before_); }

 private:
  xmlExternalEntityLoader before_ = xmlGetExternalEntityLoader();
};

}  // namespace

XmlDocument LoadXml(std::string_view bytes) {
  const ScopedEntityLoader loader;
  const QuietXmlErrors quiet;
  const ParserContext context(xmlNewParserCtxt());
  if (!context || bytes.size() > std::numeric_limits<int>::max() || !WithinXmlLimits(bytes)) return nullptr;
  PassedOver passed_over;
  context->_private = &passed_over;
  context->sax->serror = NoteError;
  context->sax->getEntity = EntityForUse;
  context->sax->startElementNs = StartElement;
  // Entities are put in, within the library's bound on their growth; its bounds on depth and size stay on.
  constexpr int kOptions =
      XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_COMPACT;
  XmlDocument document(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                         nullptr, kOptions));
  const bool accepted = document && !passed_over.any() && IsWithinBounds(document.get());
  return accepted ? std::move(document) : nullptr;
}

}  // namespace qlx::platform
