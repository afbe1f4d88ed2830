#include <zorvodsg/netcdf/NetCDFFile.h>

#include <netcdf.h>

#include <algorithm>
#include <string>
#include <unordered_set>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/host/xml/XmlDom.h>
#include <zorvodsg/netcdf/detail/GroupName.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/ResourceLimits.h>
#include <zorvodsg/values/NcLock.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMElement;
using ZorvoDSG::Host::Utf8ToWide;
using ZorvoDSG::Host::WideToUtf8;

namespace ZorvoNetCDFDSG {

using ZorvoDSG::Exception;
using ZorvoDSG::Variable;

namespace {

struct GroupRecord {
    std::string name;
    std::string fullName;  // with a trailing "/"
};

void Check(int status, const wchar_t* what, const std::filesystem::path& path) {
    if (status != NC_NOERR) {
        throw Exception(status, what, path);
    }
}

std::vector<int> ChildGroups(int groupId, const std::filesystem::path& path) {
    const ZorvoDSG::System::NcLock lock;
    int cGroups = 0;
    Check(nc_inq_grps(groupId, &cGroups, nullptr), L"groups", path);
    std::vector<int> ids(static_cast<size_t>(std::max(cGroups, 0)));
    if (!ids.empty()) {
        Check(nc_inq_grps(groupId, &cGroups, ids.data()), L"groups", path);
    }
    return ids;
}

// The root, then every subgroup depth first, children in the order the library gives them.
std::vector<int> CollectGroups(int rootId, const std::filesystem::path& path) {
    std::vector<int> ids;
    std::unordered_set<int> seen;
    std::vector<std::pair<int, uint64_t>> pending{{rootId, 0}};  // group, depth
    while (!pending.empty()) {
        const auto [id, depth] = pending.back();
        pending.pop_back();
        if (!seen.insert(id).second) {
            continue;
        }
        ids.push_back(id);
        ZorvoDSG::System::CheckResourceLimit(ids.size(), ZorvoDSG::System::kMaxGroups, "groups", path);
        ZorvoDSG::System::CheckResourceLimit(depth, ZorvoDSG::System::kMaxGroupDepth, "group nesting depth", path);
        const std::vector<int> children = ChildGroups(id, path);
        for (auto child = children.rbegin(); child != children.rend(); ++child) {
            pending.emplace_back(*child, depth + 1);
        }
    }
    return ids;
}

GroupRecord MakeGroupRecord(int groupId, const std::filesystem::path& path) {
    const ZorvoDSG::System::NcLock lock;
    char name[NC_MAX_NAME + 1] = {};
    Check(nc_inq_grpname(groupId, name), L"group name", path);
    size_t length = 0;
    Check(nc_inq_grpname_full(groupId, &length, nullptr), L"group name", path);
    std::string fullName(length, '\0');
    Check(nc_inq_grpname_full(groupId, &length, fullName.data()), L"group name", path);
    fullName.resize(std::min(length, fullName.size()));
    return {name, fullName + "/"};
}

// Records in reverse order of collection: the root last.
std::vector<GroupRecord> GroupRecords(const std::vector<int>& groupIds, const std::filesystem::path& path) {
    std::vector<GroupRecord> records;
    records.reserve(groupIds.size());
    for (auto it = groupIds.rbegin(); it != groupIds.rend(); ++it) {
        records.push_back(*it == groupIds.front() ? GroupRecord{"/", "/"} : MakeGroupRecord(*it, path));
    }
    return records;
}

// Removing a group removes its subgroups; removing "/" or "" removes every group. Only a missing name
// is an error.
void RemoveGroups(const IXMLDOMDocument& ncml, std::vector<GroupRecord>& records) {
    for (const IXMLDOMElement& remove : ncml.SelectNodes("/netcdf/remove[@type = 'group']")) {
        const std::optional<std::wstring> name = remove.GetAttribute(L"name");
        if (!name) {
            throw Exception(ZorvoDSG::eIncompleteNcMLAttribute, L"group name", ncml.Url());
        }
        const std::string prefix = detail::NormalizedGroupName(WideToUtf8(*name));
        std::erase_if(records, [&](const GroupRecord& record) { return record.fullName.starts_with(prefix); });
    }
}

}  // namespace

// The file is opened once and its handle shared by every group's dataset: opening a netCDF-4 file
// reads the metadata of all its groups, so a handle per group would cost O(groups squared). Other
// datasets of the same file in the process share it too (see NcFileHandle::s_Share).
std::vector<std::shared_ptr<NetCDFFile>> NetCDFFile::s_Open(const std::filesystem::path& path, long fileId,
                                                            IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log,
                                                            const OpenOptions& options) {
    const ZorvoDSG::System::NcLock lock;
    const std::shared_ptr<const NcFileHandle> file = NcFileHandle::s_Share(path);
    std::vector<int> groupIds{file->Id()};
    if (file->FormatExtended() != NC_FORMATX_NC3) {
        groupIds = CollectGroups(file->Id(), path);
    }
    if (groupIds.size() == 1) {
        return {std::make_shared<NetCDFFile>(file, path, fileId, std::string(), std::string(), ncml, log, options)};
    }
    std::vector<GroupRecord> records = GroupRecords(groupIds, path);
    if (ncml != nullptr) {
        RemoveGroups(*ncml, records);
    }
    std::vector<std::shared_ptr<NetCDFFile>> files;
    files.reserve(records.size());
    for (const GroupRecord& record : records) {
        files.push_back(
            std::make_shared<NetCDFFile>(file, path, fileId, record.name, record.fullName, ncml, log, options));
    }
    return files;
}

NetCDFFile::NetCDFFile(const std::filesystem::path& path, long fileId, const std::string& groupName,
                       const std::string& fullGroupName, IXMLDOMDocument* ncml, ZorvoDSG::System::ILog& log,
                       const OpenOptions& options)
    : NetCDFFile(nullptr, path, fileId, groupName, fullGroupName, ncml, log, options) {}

NetCDFFile::NetCDFFile(std::shared_ptr<const NcFileHandle> file, const std::filesystem::path& path, long fileId,
                       const std::string& groupName, const std::string& fullGroupName, IXMLDOMDocument* ncml,
                       ZorvoDSG::System::ILog& log, const OpenOptions& options)
    : m_globals(this, fullGroupName, Variable::kGlobalsId, "<globals>"),
      m_path(path),
      m_groupName(groupName),
      m_fullGroupName(fullGroupName) {
    const ZorvoDSG::System::NcLock lock;
    OpenGroup(std::move(file));
    LoadGlobalAttributes();
    LoadVariables(log, m_groupId);
    CheckCreateAssumedGeographicSR(log);
    ApplyNcML(ncml, log);
    BuildMaps();
    ClassifyCoordinateVariables(log, options);
    m_fileId = fileId;
}

NetCDFFile::~NetCDFFile() { Disconnect(); }

void NetCDFFile::OpenGroup(std::shared_ptr<const NcFileHandle> file) {
    const ZorvoDSG::System::NcLock lock;
    if (file == nullptr) {
        file = NcFileHandle::s_Share(m_path);
    }
    int groupId = file->Id();
    if (!m_groupName.empty()) {
        if (const int status = nc_inq_grp_full_ncid(file->Id(), m_fullGroupName.c_str(), &groupId);
            status != NC_NOERR) {
            throw Exception(status, Utf8ToWide(m_groupName), m_path);
        }
    }
    m_ncFile = std::move(file);
    m_ncFormat = m_ncFile->Format();
    m_fileHandle = m_ncFile->Id();
    m_groupId = groupId;
}

void NetCDFFile::Connect() {
    if (m_groupId < 0) {
        OpenGroup(nullptr);
    }
}

// The handle closes when no other dataset of the file still holds it.
void NetCDFFile::Disconnect() {
    if (m_groupId != -1) {
        const ZorvoDSG::System::NcLock lock;
        m_ncFile.reset();
        m_groupId = -1;
        m_fileHandle = -1;
    }
}

void NetCDFFile::LoadGlobalAttributes() { m_globals.LoadAttributes(m_groupId); }

void NetCDFFile::LoadVariables(ZorvoDSG::System::ILog& /*log*/, int groupId) {
    const ZorvoDSG::System::NcLock lock;
    int cVariables = 0;
    Check(nc_inq(groupId, nullptr, &cVariables, nullptr, nullptr), L"variables", m_path);
    for (int id = 0; id < cVariables; ++id) {
        m_variables.emplace_hint(m_variables.end(), id, Variable(this, m_fullGroupName, groupId, id));
    }
}

void NetCDFFile::BuildMaps() {
    // The dimensions visible in the group: its own first, then each ancestor's, so that a group's own
    // dimension hides an ancestor's of the same name. Ids are the file-wide ones variables refer to.
    const ZorvoDSG::System::NcLock lock;
    for (int groupId = m_groupId;;) {
        int cDims = 0;
        Check(nc_inq_dimids(groupId, &cDims, nullptr, 0), L"dimensions", m_path);
        std::vector<int> dimIds(static_cast<size_t>(std::max(cDims, 0)));
        if (!dimIds.empty()) {
            Check(nc_inq_dimids(groupId, &cDims, dimIds.data(), 0), L"dimensions", m_path);
        }
        for (const int dimId : dimIds) {
            char name[NC_MAX_NAME + 1] = {};
            Check(nc_inq_dimname(groupId, dimId, name), L"dimension name", m_path);
            m_name2Dim.emplace(name, dimId);
        }
        int parentId = -1;
        if (nc_inq_grp_parent(groupId, &parentId) != NC_NOERR) {
            break;
        }
        groupId = parentId;
    }

    m_name2Var.reserve(m_variables.size());
    for (const auto& [id, variable] : m_variables) {
        m_name2Var.emplace(variable.Name(), id);
        const std::vector<long>& dimIds = variable.m_dimIds;
        if (!dimIds.empty()) {
            m_var2Dims.emplace(id, dimIds);
        }
        for (const long dimId : dimIds) {
            m_dim2Vars[dimId].push_back(id);
        }
        for (const auto& attribute : variable.Attributes()) {
            m_att2Vars[attribute.first].push_back(id);
        }
    }
}

ZorvoDSG::Variable& NetCDFFile::GetVariable(const std::string& name) {
    const auto it = m_name2Var.find(name);
    if (it == m_name2Var.end()) {
        throw Exception(ZorvoDSG::eVariableNotFound, Utf8ToWide(name), NcPath());
    }
    return GetVariable(it->second);
}

ZorvoDSG::Variable& NetCDFFile::GetVariable(long varId) {
    const auto it = m_variables.find(varId);
    if (it == m_variables.end()) {
        throw Exception(ZorvoDSG::eVariableNotFound, L"id: " + std::to_wstring(varId), NcPath());
    }
    return it->second;
}

size_t NetCDFFile::DimLen(long dimId) const {
    // The group id as it is: a disconnected file gets the library's own status, not "closed file".
    const ZorvoDSG::System::NcLock lock;
    size_t length = 0;
    Check(nc_inq_dimlen(m_groupId, static_cast<int>(dimId), &length),
          (L"dimension id: " + std::to_wstring(dimId)).c_str(), m_path);
    return length;
}

std::string NetCDFFile::Uri() const {
    const std::u8string text = m_path.u8string();
    return std::string(text.begin(), text.end());
}

std::string NetCDFFile::Name() const {
    const std::u8string stem = m_path.stem().u8string();
    std::string name(stem.begin(), stem.end());
    if (!m_groupName.empty()) {
        name += "_" + m_groupName;
    }
    return name;
}

bool NetCDFFile::HasGlobalAttribute(const std::string& name) const { return m_globals.HasAttribute(name); }

ZorvoDSG::System::NcVariant NetCDFFile::GlobalAttribute(const std::string& name) const {
    return m_globals.AttributeValue(name);
}

// ---- while loading: the maps do not exist yet ----

NetCDFFile::VariableMap::iterator NetCDFFile::TryGetVariableWhileLoading(const std::string& name) {
    return std::find_if(m_variables.begin(), m_variables.end(),
                        [&](const auto& entry) { return entry.second.Name() == name; });
}

ZorvoDSG::Variable& NetCDFFile::GetVariableWhileLoading(long id) { return GetVariable(id); }

bool NetCDFFile::TryRemoveVariableWhileLoading(const std::string& name) {
    const auto it = TryGetVariableWhileLoading(name);
    if (it == m_variables.end()) {
        return false;
    }
    m_variables.erase(it);
    return true;
}

bool NetCDFFile::TryRemoveAttributeWhileLoading(const std::string& varName, const std::string& attName) {
    const auto it = TryGetVariableWhileLoading(varName);
    return it != m_variables.end() && it->second.TryRemoveAttribute(attName);
}

long NetCDFFile::NextFreeVariableId() const { return m_variables.empty() ? 0 : m_variables.rbegin()->first + 1; }

}  // namespace ZorvoNetCDFDSG
