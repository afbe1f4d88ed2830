#include "CrsLabel.h"

#include "ProjHandles.h"

namespace zdsg {

namespace {

std::string Text(const char* text) { return text != nullptr ? text : ""; }

std::string Identifier(const PJ* crs) {
    const std::string authority = Text(proj_get_id_auth_name(crs, 0));
    const std::string code = Text(proj_get_id_code(crs, 0));
    return authority.empty() || code.empty() ? std::string() : authority + ":" + code;
}

// The projection method of a projected CRS; empty for other kinds.
std::string MethodName(PJ_CONTEXT* context, const PJ* crs) {
    if (proj_get_type(crs) != PJ_TYPE_PROJECTED_CRS) {
        return {};
    }
    const ProjPtr conversion(proj_crs_get_coordoperation(context, crs));
    if (!conversion) {
        return {};
    }
    const char* method = nullptr;
    if (proj_coordoperation_get_method_info(context, conversion.get(), &method, nullptr, nullptr) == 0) {
        return {};
    }
    return Text(method);
}

std::string DatumName(PJ_CONTEXT* context, const PJ* crs) {
    // A datum ensemble (WGS 84 in recent EPSG versions) is reported as its representative datum.
    const ProjPtr datum(proj_crs_get_datum_forced(context, crs));
    return datum ? Text(proj_get_name(datum.get())) : std::string();
}

ProjPtr ReadCrs(PJ_CONTEXT* context, const std::string& wkt) {
    return ProjPtr(wkt.empty() ? nullptr : proj_create(context, wkt.c_str()));
}

}  // namespace

std::string CrsIdentifier(const std::string& wkt) {
    const ProjContextPtr context = NewQuietProjContext();
    const ProjPtr crs = ReadCrs(context.get(), wkt);
    return crs ? Identifier(crs.get()) : std::string();
}

std::string CrsLabel(const std::string& wkt) {
    const ProjContextPtr context = NewQuietProjContext();
    const ProjPtr crs = ReadCrs(context.get(), wkt);
    if (!crs) {
        return "unreadable WKT";
    }
    std::string name = Text(proj_get_name(crs.get()));
    if (name.empty()) {
        name = "unnamed";
    }
    if (const std::string id = Identifier(crs.get()); !id.empty()) {
        return name + " (" + id + ")";
    }
    std::string details = MethodName(context.get(), crs.get());
    if (const std::string datum = DatumName(context.get(), crs.get()); !datum.empty()) {
        details += (details.empty() ? "datum " : ", datum ") + datum;
    }
    return details.empty() ? name : name + " (" + details + ")";
}

}  // namespace zdsg
