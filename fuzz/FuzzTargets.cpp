#include "FuzzTargets.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <mutex>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include <zorvodsg/cursor/Feature.h>
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/xml/XmlDom.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/spacetime/VerticalUnits.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace zdsg_fuzz {

namespace {

// Discards what it is given: the documents are written for the writing, not for the text.
class NullBuffer : public std::streambuf {
protected:
    std::streamsize xsputn(const char*, std::streamsize n) override { return n; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

ZorvoDSG::SpatialFilter EverythingFilter(ZorvoDSG::IFeatureClass& featureClass) {
    std::vector<std::string> instances;
    for (const auto& variable : featureClass.InstanceVariables()) {
        instances.push_back(variable.NameWithFullGroupName());
    }
    std::vector<std::string> observations;
    if (const auto* observed = dynamic_cast<const ZorvoDSG::IFeatureClassObservations*>(&featureClass)) {
        for (const auto& variable : observed->ObservationVariables()) {
            observations.push_back(variable.NameWithFullGroupName());
        }
    }
    return ZorvoDSG::SpatialFilter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                   ZorvoDSG::Host::WKSEnvelopeZ(), instances, observations);
}

uint64_t ReadClass(ZorvoDSG::BasicFeatureClass& featureClass) {
    uint64_t cFeatures = 0;
    const ZorvoDSG::SpatialFilter filter = EverythingFilter(featureClass);
    const auto cursor = featureClass.Search(filter);
    const auto feature = cursor->CreateEmptyFeature();
    const ZorvoDSG::JSONObjectKeys keys = ZorvoDSG::Feature::s_AttributeKeys(featureClass.InstanceVariables());
    ZorvoDSG::ZorvoJSONBuffer buffer;
    while (cursor->QueryNext(feature)) {
        buffer.Clear();
        ZorvoDSG::ZorvoJSONWriter writer(buffer);
        feature->ToZorvoJSON(keys, writer);
        (void)feature->Extent();
        ++cFeatures;
    }
    NullBuffer discard;
    std::ostream out(&discard);
    ZorvoDSG::ZorvoJSONFeatureSet::s_Stream(featureClass, out);
    return cFeatures;
}

// The refusals the library documents: its Exception, the standard runtime errors with fixed texts of
// the metadata model ("invalid dimensions for variable", ...), the invalid-argument and out-of-range
// errors of reading a text as a number, the bad variant access of an attribute read as text that is
// not, and the thrown texts of value conversions. Anything else escaping (bad_alloc included) is a
// finding.
template <class Read>
bool bRefused(Read&& read, std::vector<std::string>& refusals) {
    try {
        read();
        return false;
    } catch (const ZorvoDSG::Exception& e) {
        refusals.push_back(ZorvoDSG::Host::WideToUtf8(e.ToString().Str()));
    } catch (const std::runtime_error& e) {
        refusals.push_back(e.what());
    } catch (const std::invalid_argument& e) {
        refusals.push_back(e.what());
    } catch (const std::out_of_range& e) {
        refusals.push_back(e.what());
    } catch (const std::bad_variant_access&) {
        refusals.push_back("an attribute that must be text holds another type");
    } catch (const char* text) {
        refusals.push_back(text != nullptr ? text : "");
    }
    return true;
}

void ReadDatasets(const std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>>& datasets, ReadSummary& summary) {
    summary.cDatasets = datasets.size();
    for (const auto& dataset : datasets) {
        bRefused(
            [&] {
                const auto featureClass =
                    ZorvoDSG::BasicFeatureClass::s_Open(dataset, ZorvoDSG::eFeatureUnknown, nullptr);
                ++summary.cClasses;
                summary.cFeatures += ReadClass(*featureClass);
            },
            summary.refusals);
    }
}

bool bClassicImage(const uint8_t* data, size_t size) {
    return size >= 4 && std::memcmp(data, "CDF", 3) == 0 && (data[3] == 1 || data[3] == 2 || data[3] == 5);
}

// A file of this process's own, rewritten for every input.
const std::filesystem::path& ScratchFile() {
    static const std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("zdsg_fuzz_" + std::to_string(::getpid()) + ".nc");
    return path;
}

}  // namespace

void InitOnce(const std::filesystem::path& udunits2Xml) {
    static std::once_flag s_once;
    std::call_once(s_once, [&] { ZorvoDSG::s_InitUDUnits2(udunits2Xml); });
}

ReadSummary ReadEverything(const std::filesystem::path& path) {
    ReadSummary summary;
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>> datasets;
    if (!bRefused([&] { datasets = ZorvoNetCDFDSG::NetCDFFile::s_Open(path, 0, nullptr, log); }, summary.refusals)) {
        ReadDatasets(datasets, summary);
    }
    return summary;
}

void FuzzNetCDFImage(const uint8_t* data, size_t size) {
    if (!bClassicImage(data, size)) {
        return;
    }
    {
        std::ofstream file(ScratchFile(), std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    ReadEverything(ScratchFile());
}

void FuzzNcML(const uint8_t* data, size_t size, const std::filesystem::path& file) {
    ZorvoDSG::Host::XmlParseError error;
    const auto document =
        ZorvoDSG::Host::IXMLDOMDocument::LoadText(std::string(reinterpret_cast<const char*>(data), size), file, error);
    if (!document) {
        return;
    }
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    std::vector<std::shared_ptr<ZorvoNetCDFDSG::NetCDFFile>> datasets;
    ReadSummary summary;
    if (!bRefused([&] { datasets = ZorvoNetCDFDSG::NetCDFFile::s_Open(file, 0, document.get(), log); },
                  summary.refusals)) {
        ReadDatasets(datasets, summary);
    }
}

void FuzzUnits(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const ZorvoDSG::SpaceTime::Unit unit = ZorvoDSG::SpaceTime::ParseUnit(text);
    std::vector<std::string> refusals;
    bRefused(
        [&] {
            (void)ZorvoDSG::SpaceTime::IsPressureUnit(unit);
            (void)ZorvoDSG::SpaceTime::IsLengthUnit(unit);
            (void)ZorvoDSG::SpaceTime::IsTimeUnit(unit);
            (void)ZorvoDSG::SpaceTime::bPressureUnits(text);
            (void)ZorvoDSG::SpaceTime::ZUnits(text);
        },
        refusals);
    for (const auto parse : {&ZorvoDSG::SpaceTime::ParseTimeUnits, &ZorvoDSG::SpaceTime::ParseIsoTimeUnits}) {
        bRefused(
            [&] {
                const ZorvoDSG::SpaceTime::TimeReference reference = parse(text);
                for (const double value : {0.0, -1.5, 1e9, 1e300, -1e300, std::nan(""), HUGE_VAL}) {
                    (void)reference.ToFileTime(value);
                }
            },
            refusals);
    }
}

}  // namespace zdsg_fuzz
