#pragma once
// What a cursor hands out for one DSG instance: its index in the file, its object id and the values
// of the instance variables the search asked for. Subclasses add the geometry and, for profiles and
// trajectories, one array of observation values per observation variable. Always made and held
// through shared pointers; a cursor can refill the same feature for a whole search.

#include <cstdint>
#include <vector>

#include <zorvodsg/host/Wks.h>
#include <zorvodsg/json/JSONObjectKeys.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/netcdf/Variable.h>
#include <zorvodsg/values/NcVariant.h>

namespace ZorvoDSG {

class Feature {
public:
    virtual ~Feature() = default;

    // Every instance value becomes empty; the OID and the instance id stay.
    virtual void SetEmpty();
    virtual bool bEmpty() const = 0;
    virtual Host::WKSEnvelopeZ Extent() const = 0;
    virtual bool bDisjoint(const Host::WKSEnvelopeZ& envelope) const = 0;
    // The ZorvoJSON feature object {"geometry": ..., "attributes": {...}}. The attributes are one
    // member per variable of `instanceVariables` (the list the feature was read with), keyed by its
    // Name() and valued by the instance value of the same index; a name given again is skipped, and a
    // variable past the feature's values is null.
    virtual void ToZorvoJSON(const std::vector<Variable>& instanceVariables, ZorvoJSONWriter& writer) const = 0;
    // The same with the attribute keys of that list made once (s_AttributeKeys), for writing many
    // features read with one list.
    virtual void ToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const = 0;
    static JSONObjectKeys s_AttributeKeys(const std::vector<Variable>& instanceVariables);

    System::NcVariant OID() const { return m_oid; }
    void SetOID(const System::NcVariant& oid) { m_oid = oid; }
    uint64_t InstanceID() const { return m_instanceId; }
    void SetInstanceID(uint64_t id) { m_instanceId = id; }
    // Value i of the instance variables the feature was made for.
    System::NcVariant InstanceValue(long i) const { return m_instanceValues.at(static_cast<size_t>(i)); }
    long cInstanceValues() const { return static_cast<long>(m_instanceValues.size()); }
    // All of them, without a copy.
    const std::vector<System::NcVariant>& InstanceValues() const { return m_instanceValues; }

    // For cursors: the slots they refill in place.
    std::vector<System::NcVariant>& MutableInstanceValues() { return m_instanceValues; }
    System::NcVariant& MutableOID() { return m_oid; }

protected:
    explicit Feature(const std::vector<Variable>& instanceVariables)
        : m_instanceValues(instanceVariables.size()) {}
    Feature(const Feature&) = default;
    Feature& operator=(const Feature&) = default;

    // The "attributes" member of the feature object.
    void AttributesToZorvoJSON(const JSONObjectKeys& attributeKeys, ZorvoJSONWriter& writer) const;

private:
    uint64_t m_instanceId = 0;
    System::NcVariant m_oid;
    std::vector<System::NcVariant> m_instanceValues;
};

}  // namespace ZorvoDSG
