#pragma once
// A dataset's lookup maps and the operations feature classes, cursors and workspaces use. One object
// per netCDF file without groups, or per group of a file with groups.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include <zorvodsg/netcdf/CoordinateVariableId.h>
#include <zorvodsg/netcdf/FeatureType.h>

namespace ZorvoDSG {

class Variable;

class ICFMetadata {
public:
    using IdMap = std::unordered_map<long, std::vector<long>>;
    using NameMap = std::unordered_map<std::string, long>;
    using AttMap = std::unordered_map<std::string, std::vector<long>>;
    using CoordMap = std::unordered_map<std::string, CoordinateVariableId>;

    virtual eFeatureType FeatureType() const = 0;
    virtual size_t DimLen(long dimId) const = 0;
    virtual Variable& GetVariable(const std::string& name) = 0;
    virtual Variable& GetVariable(long varId) = 0;
    virtual std::string Uri() const = 0;
    virtual std::filesystem::path NcPath() const = 0;
    virtual std::string Name() const = 0;

    // The group's netCDF id; std::runtime_error "closed file" while disconnected.
    int NcID() const {
        if (m_groupId == -1) {
            throw std::runtime_error("closed file");
        }
        return m_groupId;
    }
    long FileId() const { return m_fileId; }

    // The lookup maps, built once at load and read-only afterwards.
    const IdMap& Var2Dims() const { return m_var2Dims; }
    const IdMap& Dim2Vars() const { return m_dim2Vars; }
    const NameMap& Name2Var() const { return m_name2Var; }
    const NameMap& Name2Dim() const { return m_name2Dim; }
    const AttMap& Att2Vars() const { return m_att2Vars; }
    const CoordMap& Name2CoordVar() const { return m_name2CoordVar; }

protected:
    ICFMetadata() : m_self(std::make_shared<ICFMetadata*>(this)) {}
    ICFMetadata(const ICFMetadata&) = delete;
    ICFMetadata& operator=(const ICFMetadata&) = delete;
    ~ICFMetadata() { *m_self = nullptr; }  // never deleted through the interface

    int m_groupId = -1;
    int m_fileHandle = -1;
    IdMap m_var2Dims;
    IdMap m_dim2Vars;
    NameMap m_name2Var;
    NameMap m_name2Dim;
    AttMap m_att2Vars;
    CoordMap m_name2CoordVar;
    long m_fileId = 0;

private:
    friend class Variable;

    // What the file's variables keep of it: the file while it lives, null afterwards, so that a
    // Variable copied out of its file and kept longer sees no file instead of a dangling pointer.
    std::shared_ptr<ICFMetadata*> m_self;
};

}  // namespace ZorvoDSG
