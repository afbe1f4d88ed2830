#pragma once
// Builds SpaceTimeReferences from literal attributes, and checks the Exceptions they raise.

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace ZorvoDSGTest {

using ZorvoDSG::Host::WideToUtf8;

using ZorvoDSG::System::AttributeMap;
using ZorvoDSG::System::NcVariant;
using ZorvoDSG::SpaceTime::SpaceTimeReference;
using namespace std::string_literals;

inline SpaceTimeReference Str(const AttributeMap& properties, const std::string& zUnits = "",
                              ZorvoDSG::SpaceTime::eVerticalDatumModel model =
                                  ZorvoDSG::SpaceTime::eVerticalDatumUnspecified,
                              const NcVariant& gridMapping = "crs"s) {
    static ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    return SpaceTimeReference(gridMapping, properties, zUnits, true, model, {}, log);
}

// Runs `f`, expecting Exception `code` with `detail` and an empty path.
inline void ExpectException(const std::function<void()>& f, long code, const std::string& detail) {
    try {
        f();
        ADD_FAILURE() << "no exception, expected code " << code;
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), code);
        EXPECT_EQ(WideToUtf8(e.wsDetail()), detail);
        EXPECT_TRUE(e.NcPath().empty());
    }
}

// Runs `f`, expecting Exception eBadWKT whose detail is gk's reason, ": " and the WKT.
inline void ExpectBadWkt(const std::function<void()>& f, const std::string& wkt) {
    try {
        f();
        ADD_FAILURE() << "accepted " << wkt;
    } catch (const ZorvoDSG::Exception& e) {
        EXPECT_EQ(e.NcErr(), ZorvoDSG::eBadWKT);
        const std::string detail = WideToUtf8(e.wsDetail());
        ASSERT_GT(detail.size(), wkt.size() + 2) << detail;
        EXPECT_EQ(detail.substr(detail.size() - wkt.size() - 2), ": " + wkt);
    }
}

// Runs `f`, expecting std::runtime_error (not Exception) with `what`.
inline void ExpectRuntimeError(const std::function<void()>& f, const std::string& what) {
    try {
        f();
        ADD_FAILURE() << "no exception, expected " << what;
    } catch (const ZorvoDSG::Exception& e) {
        ADD_FAILURE() << "Exception " << e.NcErr() << " instead of " << what;
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), what.c_str());
    }
}

}  // namespace ZorvoDSGTest
