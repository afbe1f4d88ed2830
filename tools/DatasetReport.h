#pragma once
// What `zdsg inspect` learned about one file: collected through the library's public API first,
// then written as text or JSON. Texts are the library's byte strings (UTF-8 as far as the file is).

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <zorvodsg/netcdf/OpenOptions.h>
#include <zorvodsg/values/NcVariant.h>

namespace zdsg {

// How the library classified a variable, looked up by the variable's name in Name2CoordVar.
struct CoordinateReport {
    std::string axis;                  // "X", "Y", "Z" or "T"
    std::optional<bool> zUp;           // Z only
    std::string verticalDatumModel;    // Z only
    std::string timeUnit;              // T only
    std::string baseTime;              // T only: ISO 8601 UTC
    std::string error;                 // T only: the base time could not be computed
};

struct VariableReport {
    long id = 0;
    std::string name;
    std::string type;
    std::vector<std::string> dimensions;
    std::optional<std::string> units;
    std::optional<std::string> standardName;
    std::optional<std::string> gridMapping;
    std::optional<CoordinateReport> coordinate;
    // scale, offset: the packing attributes as the file holds them (1 and 0 when one is absent)
    std::optional<std::pair<ZorvoDSG::System::NcVariant, ZorvoDSG::System::NcVariant>> packing;
    ZorvoDSG::System::NcVariant fillValue;
};

struct DimensionReport {
    long id = 0;
    std::string name;
    size_t length = 0;
};

struct CfRoleReport {
    std::string variable;
    std::string value;
};

// One grid-mapping variable named by some variable's grid_mapping attribute.
struct CrsReport {
    std::string gridMapping;
    std::vector<std::string> usedBy;
    std::optional<std::string> wkt;
    std::optional<std::string> wktError;
    std::optional<std::string> vwkt;  // absent when the dataset has no vertical CRS
    std::optional<std::string> vwktError;
};

struct DatasetReport {
    std::string name;
    std::string fullGroupName;
    std::string format;
    std::optional<std::string> cfVersion;  // "1.8"; absent when no CF version was found
    std::string featureType;
    std::vector<CfRoleReport> cfRoles;
    std::vector<std::pair<std::string, ZorvoDSG::System::NcVariant>> globalAttributes;
    std::vector<DimensionReport> dimensions;
    std::vector<VariableReport> variables;
    std::vector<CrsReport> crs;
    std::vector<std::string> errors;  // parts of the dataset the library could not describe
};

struct MessageReport {
    long code = 0;
    std::string name;
    std::string text;
};

struct FileReport {
    std::string path;
    bool read = false;
    std::string error;  // why the file was refused
    std::vector<MessageReport> messages;
    std::vector<DatasetReport> datasets;
};

struct Summary {
    size_t files = 0;
    size_t read = 0;
    size_t refused = 0;
    size_t datasets = 0;
    size_t variables = 0;
    size_t messages = 0;

    void Add(const FileReport& file) {
        ++files;
        ++(file.read ? read : refused);
        datasets += file.datasets.size();
        for (const auto& dataset : file.datasets) {
            variables += dataset.variables.size();
        }
        messages += file.messages.size();
    }
};

// Facts about the run itself, shown before the files.
struct RunInfo {
    std::string version;
    std::optional<std::string> udunits2;  // the unit database loaded, if any
    std::optional<std::string> ncml;
    ZorvoNetCDFDSG::OpenOptions openOptions;  // how the files are opened
};

}  // namespace zdsg
