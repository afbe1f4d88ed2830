#pragma once
// Owning handles for libxml2 objects and the process-wide set-up the DOM needs before parsing.

#include <memory>

#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <libxml/xpath.h>

namespace ZorvoDSG::Host::XmlDetail {

struct DocDeleter {
    void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
struct ParserCtxtDeleter {
    void operator()(xmlParserCtxt* ctxt) const { xmlFreeParserCtxt(ctxt); }
};
struct XPathContextDeleter {
    void operator()(xmlXPathContext* ctxt) const { xmlXPathFreeContext(ctxt); }
};
struct XPathObjectDeleter {
    void operator()(xmlXPathObject* obj) const { xmlXPathFreeObject(obj); }
};
struct XmlCharDeleter {
    void operator()(xmlChar* text) const { xmlFree(text); }
};

using DocPtr = std::unique_ptr<xmlDoc, DocDeleter>;
using ParserCtxtPtr = std::unique_ptr<xmlParserCtxt, ParserCtxtDeleter>;
using XPathContextPtr = std::unique_ptr<xmlXPathContext, XPathContextDeleter>;
using XPathObjectPtr = std::unique_ptr<xmlXPathObject, XPathObjectDeleter>;
using XmlCharPtr = std::unique_ptr<xmlChar, XmlCharDeleter>;

// Initialises libxml2 once per process and silences its global error output on the calling thread
// (libxml2 keeps those handlers per thread). Call before any other libxml2 function.
void EnsureLibXml();

// A structured error handler that drops everything; errors are read back from the contexts.
void IgnoreStructuredError(void* userData, xmlError* error) noexcept;

}  // namespace ZorvoDSG::Host::XmlDetail
