#include "DatasetCollector.h"

#include <algorithm>
#include <map>
#include <memory>

#include "Names.h"
#include <zorvodsg/host/FileTime.h>
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/netcdf/FeatureType.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

using ZorvoDSG::Host::FileTimeToUInt64;
using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::WideToUtf8;

namespace zdsg {

namespace {

using ZorvoDSG::Variable;
using ZorvoDSG::System::NcVariant;
using ZorvoNetCDFDSG::NetCDFFile;
namespace SpaceTime = ZorvoDSG::SpaceTime;

std::optional<std::string> TextAttribute(const Variable& variable, const std::string& name) {
    const NcVariant* value = variable.Attributes().get(name);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (const auto* text = std::get_if<std::string>(value)) {
        return *text;
    }
    return ValueText(*value);
}

std::string TypeNameOf(const Variable& variable) {
    try {
        return TypeName(variable.Type());
    } catch (...) {
        return TypeName(0);  // a variable without data in the file (NcML, assumed grid mapping)
    }
}

CoordinateReport DescribeCoordinate(const ZorvoDSG::CoordinateVariableId& entry) {
    CoordinateReport coordinate;
    switch (entry.role) {
        case SpaceTime::eCoordinateX: coordinate.axis = "X"; break;
        case SpaceTime::eCoordinateY: coordinate.axis = "Y"; break;
        case SpaceTime::eCoordinateZ:
            coordinate.axis = "Z";
            coordinate.zUp = entry.bZUp;
            coordinate.verticalDatumModel = VerticalDatumModelName(entry.verticalDatumModel);
            break;
        case SpaceTime::eCoordinateT:
            coordinate.axis = "T";
            coordinate.timeUnit = TimeUnitName(entry.timeReference.timeUnit());
            try {
                // The value 0 is the reference instant itself, moved to UTC by the zone offset.
                coordinate.baseTime = FileTimeToIso8601(FileTimeToUInt64(entry.timeReference.ToFileTime(0.0)));
            } catch (...) {
                coordinate.error = CurrentExceptionText();
            }
            break;
        default: coordinate.axis = "role " + std::to_string(static_cast<int>(entry.role)); break;
    }
    return coordinate;
}

VariableReport DescribeVariable(const NetCDFFile& file, const Variable& variable) {
    VariableReport report;
    report.id = variable.Id();
    report.name = variable.Name();
    report.type = TypeNameOf(variable);
    report.dimensions = variable.aDimNames();
    report.units = TextAttribute(variable, "units");
    report.standardName = TextAttribute(variable, "standard_name");
    report.gridMapping = TextAttribute(variable, "grid_mapping");
    const auto& coordinates = file.Name2CoordVar();
    if (const auto it = coordinates.find(variable.Name()); it != coordinates.end()) {
        report.coordinate = DescribeCoordinate(it->second);
    }
    if (variable.IsPacked()) {
        // The attributes themselves rather than UnpackInfo's doubles: a float 0.01 stays 0.01.
        const NcVariant scale = variable.TryAttributeValue("scale_factor");
        const NcVariant offset = variable.TryAttributeValue("add_offset");
        report.packing.emplace(ZorvoDSG::System::s_bEmpty(scale) ? NcVariant(1.0) : scale,
                               ZorvoDSG::System::s_bEmpty(offset) ? NcVariant(0.0) : offset);
    }
    report.fillValue = variable.FillValue();
    return report;
}

// Units, direction and datum model of the dataset's first Z coordinate, for the vertical CRS.
struct VerticalPart {
    std::string units;
    bool bZUp = true;
    SpaceTime::eVerticalDatumModel model = SpaceTime::eVerticalDatumUnspecified;
};

VerticalPart FirstZ(NetCDFFile& file) {
    for (const auto& [id, variable] : file.Variables()) {
        const auto it = file.Name2CoordVar().find(variable.Name());
        if (it != file.Name2CoordVar().end() && it->second.role == SpaceTime::eCoordinateZ) {
            return {file.GetVariable(it->second.id).TryUnitsString(), it->second.bZUp,
                    it->second.verticalDatumModel};
        }
    }
    return {};
}

CrsReport DescribeCrs(NetCDFFile& file, const std::string& gridMapping, const VerticalPart& vertical,
                      ZorvoDSG::System::ILog& log) {
    CrsReport report;
    report.gridMapping = gridMapping;
    try {
        const auto& properties = file.GetVariable(gridMapping).Attributes();
        const SpaceTime::SpaceTimeReference reference(NcVariant(gridMapping), properties, vertical.units, vertical.bZUp,
                                                vertical.model, SpaceTime::TimeReference(), log);
        try {
            report.wkt = reference.WKT();
        } catch (...) {
            report.wktError = CurrentExceptionText();
        }
        try {
            std::string vwkt = reference.VWKT();
            if (!vwkt.empty()) {
                report.vwkt = std::move(vwkt);
            }
        } catch (...) {
            report.vwktError = CurrentExceptionText();
        }
    } catch (...) {
        report.wktError = CurrentExceptionText();
    }
    return report;
}

template <typename Step>
void Guarded(DatasetReport& report, const char* what, Step step) {
    try {
        step();
    } catch (...) {
        report.errors.push_back(std::string(what) + ": " + CurrentExceptionText());
    }
}

DatasetReport DescribeDataset(NetCDFFile& file, ZorvoDSG::System::ILog& log) {
    DatasetReport report;
    Guarded(report, "name", [&] { report.name = file.Name(); });
    report.fullGroupName = file.FullGroupName();
    report.format = FormatName(file.NcFormat());
    Guarded(report, "Conventions", [&] {
        const auto version = file.CFConventionsVersion();
        if (version.major != 0 || version.minor != 0) {
            report.cfVersion = std::to_string(version.major) + "." + std::to_string(version.minor);
        }
    });
    report.featureType = ZorvoDSG::FeatureTypeName(ZorvoDSG::eFeatureUnknown);
    Guarded(report, "featureType", [&] { report.featureType = ZorvoDSG::FeatureTypeName(file.FeatureType()); });
    for (const auto& [name, value] : file.GlobalAttributes().Attributes()) {
        report.globalAttributes.emplace_back(name, value);
    }

    for (const auto& [name, id] : file.Name2Dim()) {
        report.dimensions.push_back({id, name, file.DimLen(id)});
    }
    std::sort(report.dimensions.begin(), report.dimensions.end(),
              [](const DimensionReport& a, const DimensionReport& b) { return a.id < b.id; });

    std::vector<std::string> gridMappings;  // in order of first use
    std::map<std::string, std::vector<std::string>> users;
    for (const auto& [id, variable] : file.Variables()) {
        Guarded(report, variable.Name().c_str(), [&] {
            VariableReport described = DescribeVariable(file, variable);
            if (auto role = TextAttribute(variable, "cf_role")) {
                report.cfRoles.push_back({variable.Name(), *role});
            }
            if (const NcVariant* gm = variable.Attributes().get("grid_mapping")) {
                if (const auto* name = std::get_if<std::string>(gm)) {
                    if (users[*name].empty()) {
                        gridMappings.push_back(*name);
                    }
                    users[*name].push_back(variable.Name());
                }
            }
            report.variables.push_back(std::move(described));
        });
    }

    if (!gridMappings.empty()) {
        VerticalPart vertical;
        Guarded(report, "vertical coordinate", [&] { vertical = FirstZ(file); });
        for (const auto& name : gridMappings) {
            CrsReport crs = DescribeCrs(file, name, vertical, log);
            crs.usedBy = users[name];
            report.crs.push_back(std::move(crs));
        }
    }
    return report;
}

}  // namespace

FileReport InspectFile(const std::filesystem::path& path, IXMLDOMDocument* ncml,
                       const ZorvoNetCDFDSG::OpenOptions& options) {
    FileReport report;
    report.path = path.string();
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    try {
        auto datasets = NetCDFFile::s_Open(path, 0, ncml, log, options);
        report.read = true;
        for (const auto& dataset : datasets) {
            try {
                report.datasets.push_back(DescribeDataset(*dataset, log));
            } catch (...) {
                DatasetReport failed;
                failed.fullGroupName = dataset->FullGroupName();
                failed.errors.push_back(CurrentExceptionText(path));
                report.datasets.push_back(std::move(failed));
            }
        }
    } catch (...) {
        report.read = false;
        report.error = CurrentExceptionText(path);
    }
    for (long i = 0; i < log.cMessages(); ++i) {
        const auto message = log.GetMessage(i);
        report.messages.push_back({message.Code(), MessageName(message.Code()), WideToUtf8(message.Text())});
    }
    return report;
}

}  // namespace zdsg
