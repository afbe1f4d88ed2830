// WKT in and out, names and error texts.

#include <charconv>
#include <string>

#include <zorvodsg/host/gk/Gk.h>
#include <zorvodsg/host/gk/detail/GkCommon.h>
#include <zorvodsg/host/gk/detail/GkErrors.h>

namespace ZorvoDSG::Host {

using namespace gk_detail;

namespace {

// 15 significant digits, as PROJ prints unit factors, with a decimal point whatever the host's locale.
std::string Number(double value) {
    char text[32];
    auto const result = std::to_chars(text, text + sizeof text, value, std::chars_format::general, 15);
    return std::string(text, result.ec == std::errc() ? result.ptr : text);
}

// PROJ's own quoting: a double quote inside a WKT string is doubled.
std::string Quoted(std::string const& text) {
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c;
        if (c == '"') {
            quoted += '"';
        }
    }
    return quoted + "\"";
}

std::string Joined(char const* const* list) {
    std::string text;
    for (; list != nullptr && *list != nullptr; ++list) {
        if (!text.empty()) {
            text += "; ";
        }
        text += *list;
    }
    return text;
}

}  // namespace

bool gk_object_to_string(gk_object const* object, std::string& buffer) {
    PJ_CONTEXT* const ctx = BeginCall();
    buffer.clear();
    if (auto const* unit = dynamic_cast<GkUnit const*>(object)) {
        buffer = (unit->angular() ? "ANGLEUNIT[" : "LENGTHUNIT[") + Quoted(unit->name()) + "," +
                 Number(unit->factor()) + "]";
        return true;
    }
    PjPtr conversion;
    PJ const* pj = AsPj(object);
    if (auto const* block = dynamic_cast<GkProjection const*>(object)) {
        conversion = ProjectionConversion(ctx, *block, nullptr, kMetre, 1.0);
        pj = conversion.get();
    }
    if (pj == nullptr) {
        Fail("no object to print");
        return false;
    }
    char const* const options[] = {"MULTILINE=NO", nullptr};
    char const* const wkt = proj_as_wkt(ctx, pj, PJ_WKT2_2019, options);
    if (wkt == nullptr) {
        Fail("cannot print the object as WKT");
        return false;
    }
    buffer = wkt;
    return true;
}

gk_object* gk_object_from_string_errext(std::string const& wkt, gk_err_ext* err) {
    PJ_CONTEXT* const ctx = BeginCall();
    auto const failed = [err](std::string text) -> gk_object* {
        text = "cannot parse WKT: " + text;
        int const number = RecordError(text);
        if (err != nullptr) {
            err->err_num = number;
            err->message = text;
        }
        return Fail(std::move(text));
    };
    if (err != nullptr) {
        *err = gk_err_ext{};
    }
    if (wkt.empty()) {
        return failed("empty text");
    }
    if (wkt.find('\0') != std::string::npos) {
        return failed("embedded NUL character");
    }
    char const* const options[] = {"STRICT=NO", nullptr};
    PROJ_STRING_LIST warnings = nullptr;
    PROJ_STRING_LIST errors = nullptr;
    PjPtr object(proj_create_from_wkt(ctx, wkt.c_str(), options, &warnings, &errors));
    PjStringListPtr const warningList(warnings);
    PjStringListPtr const errorList(errors);
    if (!object) {
        std::string text = Joined(errors);
        std::string const log = ProjContext::Current()->TakeLog();
        if (text.empty()) {
            text = log.empty() ? "unrecognised WKT" : log;
        }
        return failed(std::move(text));
    }
    return Wrap(std::move(object));
}

bool gk_err_num_to_str(int errNum, std::string& buffer) {
    return ErrorText(errNum, buffer);
}

bool gk_object_name(gk_object const* object, std::string& buffer) {
    BeginCall();
    buffer.clear();
    if (auto const* unit = dynamic_cast<GkUnit const*>(object)) {
        buffer = unit->name();
        return true;
    }
    PJ* pj = AsPj(object);
    PjPtr conversion;
    if (auto const* block = dynamic_cast<GkProjection const*>(object)) {
        conversion = ProjectionConversion(Ctx(), *block, nullptr, kMetre, 1.0);
        pj = conversion.get();
    }
    char const* const name = pj != nullptr ? proj_get_name(pj) : nullptr;
    if (name == nullptr) {
        Fail("the object has no name");
        return false;
    }
    buffer = name;
    return true;
}

bool gk_last_error_text(std::string& buffer) {
    buffer = LastError();
    return !buffer.empty();
}

}  // namespace ZorvoDSG::Host
