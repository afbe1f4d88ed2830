#include <zorvodsg/host/xml/detail/LibXml.h>

#include <mutex>

#include <libxml/xmlerror.h>

namespace ZorvoDSG::Host::XmlDetail {

namespace {

void IgnoreGenericError(void* /*ctx*/, const char* /*msg*/, ...) noexcept {}

void SilenceThisThread() {
    xmlSetGenericErrorFunc(nullptr, IgnoreGenericError);
    xmlSetStructuredErrorFunc(nullptr, IgnoreStructuredError);
}

}  // namespace

void IgnoreStructuredError(void* /*userData*/, xmlError* /*error*/) noexcept {}

void EnsureLibXml() {
    static std::once_flag once;
    std::call_once(once, [] {
        xmlInitParser();
        // Threads created from now on start silent too.
        xmlThrDefSetGenericErrorFunc(nullptr, IgnoreGenericError);
        xmlThrDefSetStructuredErrorFunc(nullptr, IgnoreStructuredError);
    });
    thread_local bool silenced = false;
    if (!silenced) {
        SilenceThisThread();
        silenced = true;
    }
}

}  // namespace ZorvoDSG::Host::XmlDetail
