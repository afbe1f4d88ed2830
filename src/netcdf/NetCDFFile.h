#pragma once
// The system's view of one netCDF file, or of one group of a netCDF-4 file: the open handle, every
// variable with its attributes, the global attributes, the lookup maps and the classified coordinate
// variables. Always owned by a shared pointer; never copied. All datasets of one file share one open
// netCDF handle, closed when the last of them disconnects or goes.

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <zorvodsg/netcdf/ICFMetadata.h>
#include <zorvodsg/netcdf/NcFileHandle.h>
#include <zorvodsg/netcdf/OpenOptions.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/ILog.h>

namespace ZorvoDSG::Host {
class IXMLDOMDocument;
class IXMLDOMElement;
}  // namespace ZorvoDSG::Host

namespace ZorvoNetCDFDSG {

class NetCDFFile final : public ZorvoDSG::ICFMetadata, public std::enable_shared_from_this<NetCDFFile> {
public:
    using VariableMap = std::map<long, ZorvoDSG::Variable>;  // ascending id: the file's variable order

    // One NetCDFFile for a file without groups, else one per group (depth first, deepest groups
    // first, the root last), less the groups an NcML document removes. `options` reach every group.
    static std::vector<std::shared_ptr<NetCDFFile>> s_Open(const std::filesystem::path& path, long fileId,
                                                           ZorvoDSG::Host::IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log,
                                                           const OpenOptions& options = OpenOptions());

    // Opens the file (or shares the process's open handle of it) and loads one group.
    NetCDFFile(const std::filesystem::path& path, long fileId, const std::string& groupName,
               const std::string& fullGroupName, ZorvoDSG::Host::IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log,
               const OpenOptions& options = OpenOptions());
    // Loads one group of a file already open as `file` (of `path`), sharing that handle.
    NetCDFFile(std::shared_ptr<const NcFileHandle> file, const std::filesystem::path& path, long fileId,
               const std::string& groupName, const std::string& fullGroupName,
               ZorvoDSG::Host::IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log,
               const OpenOptions& options = OpenOptions());
    NetCDFFile(const NetCDFFile&) = delete;
    NetCDFFile& operator=(const NetCDFFile&) = delete;
    ~NetCDFFile();

    ZorvoDSG::eFeatureType FeatureType() const override;
    size_t DimLen(long dimId) const override;
    ZorvoDSG::Variable& GetVariable(const std::string& name) override;
    ZorvoDSG::Variable& GetVariable(long varId) override;
    std::string Uri() const override;
    std::filesystem::path NcPath() const override { return m_path; }
    std::string Name() const override;

    bool HasGlobalAttribute(const std::string& name) const;
    ZorvoDSG::System::NcVariant GlobalAttribute(const std::string& name) const;
    const ZorvoDSG::Variable& GlobalAttributes() const { return m_globals; }
    ZorvoDSG::VersionNumber CFConventionsVersion() const;

    const VariableMap& Variables() const { return m_variables; }
    const std::string& GroupName() const { return m_groupName; }
    const std::string& FullGroupName() const { return m_fullGroupName; }
    // netCDF-C's format code (NC_FORMAT_*) of the file.
    int NcFormat() const { return m_ncFormat; }

    void Connect();
    void Disconnect();

    static bool s_IsEllipsoidHeight(const std::string& standardName);
    static bool s_IsEllipsoidDepth(const std::string& standardName);
    static bool s_IsGeoidHeight(const std::string& standardName);
    static bool s_IsGeoidDepth(const std::string& standardName);
    static bool s_IsTidalHeight(const std::string& standardName, ZorvoDSG::SpaceTime::eVerticalDatumModel& model);

private:
    // Finds the group in `file`, or in the process's shared handle of the file when `file` is null.
    void OpenGroup(std::shared_ptr<const NcFileHandle> file);
    void LoadGlobalAttributes();
    void LoadVariables(ZorvoDSG::System::ILog& log, int groupId);
    void CheckCreateAssumedGeographicSR(ZorvoDSG::System::ILog& log);
    void ApplyNcML(ZorvoDSG::Host::IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log);
    void ApplyNcMLToGroup(const ZorvoDSG::Host::IXMLDOMElement& group, ZorvoDSG::System::ILog& log);
    void BuildMaps();
    void ClassifyCoordinateVariables(ZorvoDSG::System::ILog& log, const OpenOptions& options);

    VariableMap::iterator TryGetVariableWhileLoading(const std::string& name);
    ZorvoDSG::Variable& GetVariableWhileLoading(long id);
    bool TryRemoveVariableWhileLoading(const std::string& name);
    bool TryRemoveAttributeWhileLoading(const std::string& varName, const std::string& attName);
    // An id that no variable of the file uses (for variables that have no data in the file).
    long NextFreeVariableId() const;

    VariableMap m_variables;
    ZorvoDSG::Variable m_globals;
    std::filesystem::path m_path;
    std::string m_groupName;
    std::string m_fullGroupName;
    int m_ncFormat = 0;
    // The handle that ICFMetadata's file handle and group id refer to; null while disconnected.
    std::shared_ptr<const NcFileHandle> m_ncFile;
};

}  // namespace ZorvoNetCDFDSG
