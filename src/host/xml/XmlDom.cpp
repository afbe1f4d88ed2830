#include <zorvodsg/host/xml/XmlDom.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <system_error>

#include <libxml/entities.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xpathInternals.h>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/xml/detail/LibXml.h>

namespace ZorvoDSG::Host {

using namespace XmlDetail;

namespace {

constexpr const char* kNcmlNamespace = "http://www.unidata.ucar.edu/namespaces/netcdf/ncml-2.2";

// NcML documents are a few kilobytes; anything far larger is not one.
constexpr std::size_t kMaxDocumentBytes = 64u * 1024u * 1024u;

// No network, no DTD loading, no entity substitution, no default attributes from external DTDs, and
// libxml2's own size limits stay on (no XML_PARSE_HUGE).
constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// Set while a document is parsed on this thread; the SAX hooks record into it.
// (xmlCtxtReadMemory resets the context's _private field, so it cannot carry this.)
struct ParseState {
    bool refused = false;  // an entity declaration stopped the parse
    bool failed = false;   // `first` holds the first error
    XmlParseError first;
};
thread_local ParseState* t_state = nullptr;

// The hooks below are called from inside libxml2: nothing may unwind through its C frames, so each
// catches everything (a reason that cannot be stored for lack of memory stays empty).
void Refuse(void* ctx) noexcept {
    auto* ctxt = static_cast<xmlParserCtxt*>(ctx);
    if (t_state != nullptr && !t_state->refused) {
        t_state->refused = true;
        t_state->first = XmlParseError{};
        if (ctxt != nullptr && ctxt->input != nullptr) {
            t_state->first.line = ctxt->input->line;
            t_state->first.linepos = ctxt->input->col;
        }
        try {
            t_state->first.reason = L"entity declarations are not allowed";
        } catch (...) {
        }
    }
    if (ctxt != nullptr)
        xmlStopParser(ctxt);
}

// Any entity declaration stops the parse before the entity could be expanded or resolved: NcML has
// no use for entities, and refusing them outright defeats both external-entity reads and
// expansion bombs without relying on expansion limits.
void RefuseEntityDecl(void* ctx, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) noexcept {
    Refuse(ctx);
}
void RefuseUnparsedEntityDecl(void* ctx, const xmlChar*, const xmlChar*, const xmlChar*, const xmlChar*) noexcept {
    Refuse(ctx);
}

// A second line of defence should a declaration slip past the hooks.
bool DeclaresEntities(const xmlDoc* doc) {
    for (const xmlDtd* dtd : {doc->intSubset, doc->extSubset}) {
        if (dtd != nullptr && (dtd->entities != nullptr || dtd->pentities != nullptr))
            return true;
    }
    return false;
}

std::wstring TrimmedReason(const char* message) {
    std::wstring reason = message != nullptr ? Utf8ToWide(message) : std::wstring();
    while (!reason.empty() && (reason.back() == L'\n' || reason.back() == L'\r' || reason.back() == L' '))
        reason.pop_back();
    return reason;
}

XmlParseError ToParseError(const xmlError& error) {
    XmlParseError result;
    result.line = error.line;
    result.linepos = error.int2;
    result.reason = TrimmedReason(error.message);
    return result;
}

// libxml2 goes on after the first error and its context keeps only the last one; the first is the
// one that explains the failure.
void RecordFirstError(void* /*userData*/, xmlError* error) noexcept {
    if (t_state == nullptr || error == nullptr || t_state->failed || t_state->refused || error->level < XML_ERR_ERROR)
        return;
    t_state->failed = true;
    try {
        t_state->first = ToParseError(*error);
    } catch (...) {
        t_state->first.line = error->line;
        t_state->first.linepos = error->int2;
    }
}

// Elements of the NcML namespace become namespace-less, so that XPath selections written without
// prefixes match them. Only element nodes are touched; attributes keep their namespaces.
void DropNcmlNamespace(xmlNode* root) {
    xmlNode* node = root;
    while (node != nullptr) {
        if (node->type == XML_ELEMENT_NODE && node->ns != nullptr &&
            xmlStrEqual(node->ns->href, reinterpret_cast<const xmlChar*>(kNcmlNamespace)))
            node->ns = nullptr;
        if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
            node = node->children;
            continue;
        }
        while (node != nullptr && node != root && node->next == nullptr)
            node = node->parent;
        if (node == nullptr || node == root)
            break;
        node = node->next;
    }
}

DocPtr Parse(const char* data, std::size_t size, XmlParseError& error) {
    EnsureLibXml();
    error = XmlParseError{};
    if (size > kMaxDocumentBytes || size > static_cast<std::size_t>(INT_MAX)) {
        error.reason = L"document too large";
        return nullptr;
    }
    ParserCtxtPtr ctxt(xmlNewParserCtxt());
    if (!ctxt || ctxt->sax == nullptr) {
        error.reason = L"out of memory";
        return nullptr;
    }
    ctxt->sax->entityDecl = RefuseEntityDecl;
    ctxt->sax->unparsedEntityDecl = RefuseUnparsedEntityDecl;
    ctxt->sax->serror = RecordFirstError;

    ParseState state;
    t_state = &state;
    DocPtr doc(xmlCtxtReadMemory(ctxt.get(), data, static_cast<int>(size), nullptr, nullptr, kParseOptions));
    t_state = nullptr;

    if (state.refused) {
        error = std::move(state.first);
        return nullptr;
    }
    if (doc && DeclaresEntities(doc.get())) {
        error.reason = L"entity declarations are not allowed";
        return nullptr;
    }
    if (!doc || !ctxt->wellFormed || state.failed) {
        error = state.failed ? std::move(state.first) : ToParseError(ctxt->lastError);
        if (error.reason.empty())
            error.reason = L"the document cannot be parsed";
        return nullptr;
    }
    if (xmlNode* root = xmlDocGetRootElement(doc.get()))
        DropNcmlNamespace(root);
    return doc;
}

std::vector<IXMLDOMElement> Select(xmlDoc* doc, xmlNode* contextNode, const std::string& xpath) {
    std::vector<IXMLDOMElement> result;
    if (doc == nullptr || contextNode == nullptr)
        return result;
    EnsureLibXml();
    XPathContextPtr ctxt(xmlXPathNewContext(doc));
    if (!ctxt)
        return result;
    ctxt->error = IgnoreStructuredError;
    ctxt->node = contextNode;
    XPathObjectPtr found(xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(xpath.c_str()), ctxt.get()));
    if (!found || found->type != XPATH_NODESET || found->nodesetval == nullptr)
        return result;
    xmlNodeSet* nodes = found->nodesetval;
    xmlXPathNodeSetSort(nodes);
    result.reserve(static_cast<std::size_t>(std::max(nodes->nodeNr, 0)));
    for (int i = 0; i < nodes->nodeNr; ++i) {
        if (nodes->nodeTab[i] != nullptr && nodes->nodeTab[i]->type == XML_ELEMENT_NODE)
            result.emplace_back(nodes->nodeTab[i]);
    }
    return result;
}

bool ReadWholeFile(const std::filesystem::path& path, std::string& text, XmlParseError& error) {
    std::error_code ec;
    const auto status = std::filesystem::status(path, ec);
    if (ec || !std::filesystem::exists(status)) {
        error.reason = L"file not found";
        return false;
    }
    if (std::filesystem::is_directory(status)) {
        error.reason = L"not a file";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error.reason = L"cannot open file";
        return false;
    }
    char chunk[64 * 1024];
    while (in.read(chunk, sizeof chunk) || in.gcount() > 0) {
        text.append(chunk, static_cast<std::size_t>(in.gcount()));
        if (text.size() > kMaxDocumentBytes) {
            error.reason = L"document too large";
            return false;
        }
    }
    if (in.bad()) {
        error.reason = L"cannot read file";
        return false;
    }
    return true;
}

}  // namespace

std::string IXMLDOMElement::TagName() const {
    if (m_node == nullptr || m_node->name == nullptr)
        return {};
    return reinterpret_cast<const char*>(m_node->name);
}

std::optional<std::wstring> IXMLDOMElement::GetAttribute(const std::wstring& name) const {
    if (m_node == nullptr)
        return std::nullopt;
    const std::string utf8Name = WideToUtf8(name);
    XmlCharPtr value(xmlGetNoNsProp(m_node, reinterpret_cast<const xmlChar*>(utf8Name.c_str())));
    if (!value)
        return std::nullopt;
    return Utf8ToWide(reinterpret_cast<const char*>(value.get()));
}

std::vector<IXMLDOMElement> IXMLDOMElement::SelectNodes(const std::string& xpath) const {
    if (m_node == nullptr)
        return {};
    return Select(m_node->doc, m_node, xpath);
}

IXMLDOMDocument::IXMLDOMDocument(_xmlDoc* doc, std::filesystem::path url) : m_doc(doc), m_url(std::move(url)) {}

IXMLDOMDocument::~IXMLDOMDocument() {
    if (m_doc != nullptr)
        xmlFreeDoc(m_doc);
}

std::shared_ptr<IXMLDOMDocument> IXMLDOMDocument::LoadFile(const std::filesystem::path& path, XmlParseError& error) {
    error = XmlParseError{};
    // Read here rather than through libxml2's I/O layer, which would also inflate compressed input.
    std::string text;
    if (!ReadWholeFile(path, text, error))
        return nullptr;
    return LoadText(text, path, error);
}

std::shared_ptr<IXMLDOMDocument> IXMLDOMDocument::LoadText(const std::string& text, const std::filesystem::path& url,
                                                           XmlParseError& error) {
    DocPtr doc = Parse(text.data(), text.size(), error);
    if (!doc)
        return nullptr;
    // The wrapper takes the document only once it exists, so no failure can free it twice.
    std::unique_ptr<IXMLDOMDocument> owner(new IXMLDOMDocument(nullptr, url));
    owner->m_doc = doc.release();
    return std::shared_ptr<IXMLDOMDocument>(std::move(owner));
}

IXMLDOMElement IXMLDOMDocument::DocumentElement() const {
    return IXMLDOMElement(m_doc != nullptr ? xmlDocGetRootElement(m_doc) : nullptr);
}

std::vector<IXMLDOMElement> IXMLDOMDocument::SelectNodes(const std::string& xpath) const {
    return Select(m_doc, reinterpret_cast<xmlNode*>(m_doc), xpath);
}

}  // namespace ZorvoDSG::Host
