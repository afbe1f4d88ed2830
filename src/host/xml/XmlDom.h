#pragma once
// A small read-only XML DOM standing in for the host's MSXML documents, built on libxml2.
// Documents are parsed without network access, DTD loading or external entities, and elements of
// the NcML namespace are selected exactly like elements without a namespace. A document whose DOCTYPE
// declares any entity is refused as a parse error (NcML has no use for entities, and this defeats
// external-entity reads and expansion bombs alike); an external DTD subset is neither read nor needed.
// Parsing and selection never write to stderr: errors come back through XmlParseError, and an
// invalid XPath expression selects nothing.

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct _xmlDoc;
struct _xmlNode;

namespace ZorvoDSG::Host {

class IXMLDOMDocument;

// A borrowed view of one element; valid while its document lives.
class IXMLDOMElement {
public:
    IXMLDOMElement() = default;
    explicit IXMLDOMElement(_xmlNode* node) : m_node(node) {}

    bool IsNull() const { return m_node == nullptr; }
    // Local name of the element (without a namespace prefix).
    std::string TagName() const;
    // The attribute's text, or nothing when the element has no such attribute.
    std::optional<std::wstring> GetAttribute(const std::wstring& name) const;
    // Elements matched by an XPath expression evaluated with this element as the context node.
    std::vector<IXMLDOMElement> SelectNodes(const std::string& xpath) const;

private:
    _xmlNode* m_node = nullptr;
};

// Where and why parsing stopped.
struct XmlParseError {
    long line = 0;
    long linepos = 0;
    std::wstring reason;
};

class IXMLDOMDocument {
public:
    ~IXMLDOMDocument();
    IXMLDOMDocument(const IXMLDOMDocument&) = delete;
    IXMLDOMDocument& operator=(const IXMLDOMDocument&) = delete;

    // Parses a file. Returns null and fills `error` when the file cannot be read or parsed, or when
    // it is hostile (external entities, entity expansion beyond sane limits).
    static std::shared_ptr<IXMLDOMDocument> LoadFile(const std::filesystem::path& path, XmlParseError& error);
    // Parses text held in memory; `url` is only recorded.
    static std::shared_ptr<IXMLDOMDocument> LoadText(const std::string& text, const std::filesystem::path& url,
                                                     XmlParseError& error);

    IXMLDOMElement DocumentElement() const;
    // Elements matched by an XPath expression evaluated on the document.
    std::vector<IXMLDOMElement> SelectNodes(const std::string& xpath) const;
    const std::filesystem::path& Url() const { return m_url; }

private:
    IXMLDOMDocument(_xmlDoc* doc, std::filesystem::path url);

    _xmlDoc* m_doc;
    std::filesystem::path m_url;
};

using IXMLDOMDocumentPtr = std::shared_ptr<IXMLDOMDocument>;

}  // namespace ZorvoDSG::Host
