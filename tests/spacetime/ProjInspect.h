#pragma once
// Reads WKT back with PROJ so that tests check what a CRS means, not how gk happens to print it.

#include <map>
#include <memory>
#include <string>

#include <proj.h>

#include <zorvodsg/host/gk/detail/ProjHandles.h>

namespace ZorvoDSGTest {

using ZorvoDSG::Host::gk_detail::PjPtr;

// The CRS of a WKT text or "AUTH:CODE"; fails the test (and returns null) when PROJ refuses it.
PjPtr ParseCrs(const std::string& text);

struct ProjectionInfo {
    std::string method;
    int methodCode = 0;                       // EPSG method code, 0 when it has none
    std::map<int, double> parameters;         // EPSG parameter code -> value in degrees or metres
};

// The conversion of a projected CRS.
ProjectionInfo Projection(const std::string& wkt);

struct GeographicInfo {
    std::string name;  // of the geographic CRS (the base of a projected one)
    std::string datumName, ellipsoidName, primeMeridianName;
    double semiMajorAxis = 0, inverseFlattening = 0, primeMeridianDegrees = 0;
    int type = 0;  // PJ_TYPE of the CRS itself
};

// The geodetic part of a CRS.
GeographicInfo Geographic(const std::string& wkt);

// Whether two CRSs (or the conversions of two projected CRSs) mean the same.
bool SameConversion(const std::string& wktA, const std::string& wktB);

}  // namespace ZorvoDSGTest
