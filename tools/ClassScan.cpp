#include "ClassScan.h"

#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

#include "CrsLabel.h"
#include "FeatureWriter.h"
#include "LonLatTransform.h"
#include "Names.h"
#include "OutputFile.h"
#include <zorvodsg/cursor/IFeatureCursor.h>
#include <zorvodsg/cursor/PointFeature.h>
#include <zorvodsg/cursor/ProfileFeature.h>
#include <zorvodsg/cursor/TrajectoryFeature.h>
#include <zorvodsg/cursor/SpatialFilter.h>
#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/ZorvoJSONFeatureSet.h>
#include <zorvodsg/json/CloseOpenLevels.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>

using ZorvoDSG::Host::WKSEnvelopeZ;
using ZorvoDSG::Host::WKSPointZ;

namespace zdsg {

namespace {

using ZorvoDSG::System::NcVariant;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr uint64_t kProgressEvery = 1 << 16;

// How positions reach the output: unchanged, or through PROJ with an exact test of the box.
struct Positions {
    std::optional<LonLatTransform> transform;  // absent with --native-crs
    bool bTransform = false;
    bool bExactTest = false;  // the search envelope is wider than the box: test each output position
};

// Narrowing a double outside the float range is undefined; such a value keeps double precision.
bool bFitsFloat(double value) { return std::fabs(value) <= std::numeric_limits<float>::max(); }

bool bFloatVariable(const ZorvoDSG::Variable& variable) {
    try {
        return variable.UnpackedType() == NC_FLOAT;
    } catch (const std::exception&) {
        return false;  // a variable without a known type keeps double precision
    }
}

// The selected values that the cursor unpacks to double although CF makes them float (the type of
// scale_factor and add_offset): written as floats, 287.36 and not 287.3599935788661.
std::vector<size_t> FloatUnpackedValues(const ZorvoDSG::BasicFeatureClass& featureClass,
                                        const ClassSelection& selection) {
    std::vector<size_t> indexes;
    for (size_t i = 0; i < selection.variables.size(); ++i) {
        for (const auto& variable : featureClass.InstanceVariables()) {
            if (variable.NameWithFullGroupName() == selection.variables[i] && variable.IsPacked() &&
                bFloatVariable(variable)) {
                indexes.push_back(i);
            }
        }
    }
    return indexes;
}

// The search envelope for the box: the box itself in native coordinates, or the native rectangle
// covering it (every X and Y when PROJ cannot give one); Z bounds pass unchanged.
WKSEnvelopeZ SearchEnvelopeFor(const BoundingBox& box, Positions& positions) {
    const double zMin = box.bHasZ ? box.zMin : kNaN;
    const double zMax = box.bHasZ ? box.zMax : kNaN;
    WKSEnvelopeZ envelope;
    if (!positions.bTransform) {
        envelope.PutCoords(box.xMin, box.yMin, zMin, box.xMax, box.yMax, zMax);
        return envelope;
    }
    positions.bExactTest = true;
    double xMin = 0.0, yMin = 0.0, xMax = 0.0, yMax = 0.0;
    if (!positions.transform->NativeBounds(box.xMin, box.yMin, box.xMax, box.yMax, xMin, yMin, xMax, yMax)) {
        constexpr double kAll = std::numeric_limits<double>::max();
        xMin = yMin = -kAll;
        xMax = yMax = kAll;
    }
    envelope.PutCoords(xMin, yMin, zMin, xMax, yMax, zMax);
    return envelope;
}

// Whether times can be written: the class has T and its time reference converts values.
bool bTimesUsable(ZorvoDSG::BasicFeatureClass& featureClass, const ZorvoDSG::SpaceTime::TimeReference& reference) {
    if (!featureClass.bHasTs()) {
        return false;
    }
    try {
        reference.ToFileTime(0.0);
        return true;
    } catch (...) {
        return false;  // a unit the reference cannot convert (common years, ...): times stay empty
    }
}

// What the scan of every kind of feature shares: the class as the writers see it, how positions
// reach the output, the time reference, and the row of value pointers refilled for every feature.
class ClassContext {
public:
    ClassContext(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                 const ScanSettings& settings);

    const ClassOutput& Output() const { return m_output; }
    const WKSEnvelopeZ& SearchEnvelope() const { return m_envelope; }

    // A native position to output x, y (NaN for both without a position); false when the box,
    // tested here because the search envelope is wider, leaves it out.
    bool Place(double& x, double& y) const {
        if (!std::isfinite(x) || !std::isfinite(y)) {
            x = y = kNaN;
        } else if (m_positions.bTransform) {
            m_positions.transform->Forward(x, y);
        }
        return !m_positions.bExactTest || m_bbox->bContainsXY(x, y);
    }
    bool bFloatXY(double nativeX, double nativeY, double x, double y) const {
        return m_bFloatXY && x == nativeX && y == nativeY && bFitsFloat(x) && bFitsFloat(y);
    }
    bool bFloatZ(double z) const { return m_bFloatZ && bFitsFloat(z); }
    // A raw time as ISO 8601 text, valid until the next call; empty without a time.
    std::string_view Time(double raw);
    // The values the cursor put into the feature, lined up with the run's columns.
    std::span<const NcVariant* const> Values(ZorvoDSG::Feature& feature);

private:
    ClassOutput m_output;
    Positions m_positions;
    const BoundingBox* m_bbox = nullptr;
    WKSEnvelopeZ m_envelope;
    std::shared_ptr<ZorvoDSG::SpaceTime::SpaceTimeReference> m_reference;  // keeps the time reference
    bool m_bTimes = false;
    bool m_bFloatXY = false;
    bool m_bFloatZ = false;
    const ClassSelection& m_selection;
    std::vector<size_t> m_floatValues;
    std::vector<const NcVariant*> m_values;
    char m_timeText[kIso8601Capacity] = {};
};

ClassContext::ClassContext(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                           const ScanSettings& settings)
    : m_reference(featureClass.NativeSpatialReference()),
      m_selection(selection),
      m_floatValues(FloatUnpackedValues(featureClass, selection)),
      m_values(settings.cColumns, nullptr) {
    const std::string wkt = m_reference->WKT();
    m_output.name = featureClass.Name();
    m_output.bHasZ = featureClass.bHasZs();
    if (settings.bNativeCrs) {
        m_output.nativeCrs = CrsIdentifier(wkt);
        if (m_output.nativeCrs.empty()) {
            m_output.nativeCrs = wkt;
        }
    } else {
        m_positions.transform.emplace(wkt);
        m_positions.bTransform = !m_positions.transform->bIdentity();
    }
    m_bFloatXY = bFloatVariable(featureClass.XVar()) && bFloatVariable(featureClass.YVar());
    m_bFloatZ = m_output.bHasZ && bFloatVariable(featureClass.ZVar());
    m_bTimes = bTimesUsable(featureClass, m_reference->TimeReference());
    if (settings.bbox) {
        m_bbox = &*settings.bbox;
        m_envelope = SearchEnvelopeFor(*settings.bbox, m_positions);
    }
}

std::string_view ClassContext::Time(double raw) {
    if (!m_bTimes || !std::isfinite(raw)) {
        return {};
    }
    const uint64_t ticks = FileTimeToUInt64(m_reference->TimeReference().ToFileTime(raw));
    return {m_timeText, FileTimeToIso8601(ticks, m_timeText)};
}

std::span<const NcVariant* const> ClassContext::Values(ZorvoDSG::Feature& feature) {
    std::vector<NcVariant>& values = feature.MutableInstanceValues();
    if (values.size() != m_selection.columns.size()) {
        throw std::logic_error("the cursor selected other variables than asked for");
    }
    for (const size_t i : m_floatValues) {
        if (const auto* unpacked = std::get_if<double>(&values[i]); unpacked && bFitsFloat(*unpacked)) {
            values[i] = static_cast<float>(*unpacked);
        }
    }
    for (size_t i = 0; i < values.size(); ++i) {
        m_values[m_selection.columns[i]] = &values[i];
    }
    return m_values;
}

uint64_t ScanPoints(ZorvoDSG::IFeatureCursor& cursor, const std::shared_ptr<ZorvoDSG::Feature>& feature,
                    ZorvoDSG::PointFeature& point, ClassContext& context, const ScanSettings& settings,
                    FeatureWriter& writer) {
    PointRecord record;
    record.featureClass = &context.Output();
    uint64_t written = 0;
    while (cursor.QueryNext(feature)) {
        const WKSPointZ position = point.wksPointZ();
        double x = position.x;
        double y = position.y;
        if (!context.Place(x, y)) {
            continue;
        }
        record.x = x;
        record.y = y;
        record.bFloatXY = context.bFloatXY(position.x, position.y, x, y);
        record.z = context.Output().bHasZ && std::isfinite(position.z) ? position.z : kNaN;
        record.bFloatZ = context.bFloatZ(record.z);
        record.oid = &point.MutableOID();
        record.time = context.Time(point.Time());
        record.values = context.Values(point);
        writer.Point(record);
        if (++written % kProgressEvery == 0 && settings.progress) {
            settings.progress(written);
        }
    }
    return written;
}

// Every observation of a profile or time series: its time and z, and the values of each row.
class ProfileRows {
public:
    ProfileRows(const ClassSelection& selection, size_t cColumns)
        : m_selection(selection), m_row(cColumns, nullptr) {}

    void Fill(ZorvoDSG::ProfileFeature& profile, std::span<const NcVariant* const> instanceValues,
              ClassContext& context, ProfileRecord& record) {
        const auto& geometry = profile.wksProfile();
        const size_t cRows = RowCount(profile, geometry);
        record.cRows = cRows;
        record.observations.clear();
        for (size_t i = 0; i < m_selection.observations.size(); ++i) {
            record.observations.emplace_back(m_selection.observationColumns[i],
                                             &profile.ObservationValues(static_cast<long>(i)));
        }
        m_times.resize(cRows);
        m_cells.resize(cRows * m_row.size());
        m_rowValues.resize(cRows * m_row.size());
        record.rows.resize(cRows);
        for (size_t j = 0; j < cRows; ++j) {
            const double value = j < static_cast<size_t>(geometry.count) ? geometry.Values()[j] : kNaN;
            ProfileRecord::Row& row = record.rows[j];
            if (record.bValuesAreZ) {
                row.z = std::isfinite(value) ? value : kNaN;
                row.time = record.time;
            } else {
                row.z = record.z;
                m_times[j] = context.Time(value);
                row.time = m_times[j];
            }
            const NcVariant** cells = m_rowValues.data() + j * m_row.size();
            std::copy(instanceValues.begin(), instanceValues.end(), cells);
            for (const auto& [column, values] : record.observations) {
                NcVariant& cell = m_cells[j * m_row.size() + column];
                cell = j < values->Size() ? (*values)[j] : NcVariant{};
                cells[column] = &cell;
            }
            row.values = std::span<const NcVariant* const>(cells, m_row.size());
        }
    }

private:
    // The longer of the profile's values and its observation runs: fill values cut from the end of
    // the profile still have observations.
    size_t RowCount(ZorvoDSG::ProfileFeature& profile, const ZorvoDSG::SpaceTime::WKSProfile& geometry) const {
        size_t n = static_cast<size_t>(std::max(geometry.count, 0));
        for (long i = 0; i < profile.cObservationArrays(); ++i) {
            n = std::max(n, profile.ObservationValues(i).Size());
        }
        return n;
    }

    const ClassSelection& m_selection;
    std::vector<const NcVariant*> m_row;
    std::vector<std::string> m_times;
    std::vector<NcVariant> m_cells;
    std::vector<const NcVariant*> m_rowValues;
};

uint64_t ScanProfiles(ZorvoDSG::IFeatureCursor& cursor, const std::shared_ptr<ZorvoDSG::Feature>& feature,
                      ZorvoDSG::ProfileFeature& profile, ZorvoDSG::BasicFeatureClass& featureClass,
                      const ClassSelection& selection, ClassContext& context, const ScanSettings& settings,
                      FeatureWriter& writer) {
    ProfileRecord record;
    record.featureClass = &context.Output();
    record.bValuesAreZ = featureClass.FeatureType() == ZorvoDSG::eFeatureProfile;
    ProfileRows rows(selection, settings.cColumns);
    std::string instanceTime;
    uint64_t written = 0;
    while (cursor.QueryNext(feature)) {
        const auto& geometry = profile.wksProfile();
        double x = geometry.x;
        double y = geometry.y;
        if (!context.Place(x, y)) {
            continue;
        }
        record.x = x;
        record.y = y;
        record.bFloatXY = context.bFloatXY(geometry.x, geometry.y, x, y);
        record.oid = &profile.MutableOID();
        if (record.bValuesAreZ) {
            instanceTime = context.Time(profile.T_or_Z());
            record.time = instanceTime;
            record.z = kNaN;
        } else {
            record.time = {};
            record.z = std::isfinite(profile.T_or_Z()) ? profile.T_or_Z() : kNaN;
        }
        record.values = context.Values(profile);
        rows.Fill(profile, record.values, context, record);
        writer.Profile(record);
        if (++written % kProgressEvery == 0 && settings.progress) {
            settings.progress(written);
        }
    }
    return written;
}

// Every vertex of a trajectory: position in the output CRS, z, time and the values of its row.
uint64_t ScanTrajectories(ZorvoDSG::IFeatureCursor& cursor, const std::shared_ptr<ZorvoDSG::Feature>& feature,
                          ZorvoDSG::TrajectoryFeature& trajectory, const ClassSelection& selection,
                          ClassContext& context, const ScanSettings& settings, FeatureWriter& writer) {
    TrajectoryRecord record;
    record.featureClass = &context.Output();
    std::vector<std::string> times;
    std::vector<NcVariant> cells;
    std::vector<const NcVariant*> rowValues;
    std::string timeStart, timeEnd;
    const size_t cColumns = settings.cColumns;
    uint64_t written = 0;
    while (cursor.QueryNext(feature)) {
        const ZorvoDSG::SpaceTime::WKSTrajectory& geometry = trajectory.wksTrajectory();
        const auto cVertices = static_cast<size_t>(std::max(geometry.count, 0));
        record.oid = &trajectory.MutableOID();
        record.values = context.Values(trajectory);
        record.observations.clear();
        for (size_t i = 0; i < selection.observations.size(); ++i) {
            record.observations.emplace_back(selection.observationColumns[i],
                                             &trajectory.ObservationValues(static_cast<long>(i)));
        }
        record.vertices.resize(cVertices);
        times.resize(cVertices);
        cells.resize(cVertices * cColumns);
        rowValues.resize(cVertices * cColumns);
        bool bInside = cVertices == 0;  // an empty trajectory passed the library's filter as it is
        for (size_t j = 0; j < cVertices; ++j) {
            const ZorvoDSG::SpaceTime::WKSPointXYZT& point = geometry.Points()[j];
            TrajectoryRecord::Vertex& vertex = record.vertices[j];
            vertex.x = point.x;
            vertex.y = point.y;
            bInside = context.Place(vertex.x, vertex.y) || bInside;
            vertex.z = std::isfinite(point.z) ? point.z : kNaN;
            times[j] = context.Time(point.t);
            vertex.time = times[j];
            const NcVariant** row = rowValues.data() + j * cColumns;
            std::copy(record.values.begin(), record.values.end(), row);
            for (const auto& [column, values] : record.observations) {
                NcVariant& cell = cells[j * cColumns + column];
                cell = j < values->Size() ? (*values)[j] : NcVariant{};
                row[column] = &cell;
            }
            vertex.values = std::span<const NcVariant* const>(row, cColumns);
        }
        if (!bInside) {
            continue;
        }
        const ZorvoDSG::SpaceTime::WKSEnvelopeT range = trajectory.TimeExtent();
        timeStart = context.Time(range.TMin);
        timeEnd = context.Time(range.TMax);
        record.timeStart = timeStart;
        record.timeEnd = timeEnd;
        record.bFloatXY = false;
        writer.Trajectory(record);
        if (++written % kProgressEvery == 0 && settings.progress) {
            settings.progress(written);
        }
    }
    return written;
}

}  // namespace

void WriteZorvoJSON(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                    const ScanSettings& settings, std::string_view separator, OutputFile& out, bool& bWritten) {
    bWritten = false;
    ZorvoDSG::ZorvoJSONBuffer buffer;
    ZorvoDSG::ZorvoJSONWriter writer(buffer);
    const auto flush = [&] {
        if (!bWritten) {
            out.Write(separator);
            bWritten = true;
        }
        out.Write(std::string_view(buffer.GetString(), buffer.GetSize()));
        buffer.Clear();
    };
    try {
        if (featureClass.FeatureType() == ZorvoDSG::eFeaturePoint) {
            featureClass.ToZorvoJSON(writer);
        } else {
            const ClassContext context(featureClass, selection, settings);
            const ZorvoDSG::SpatialFilter filter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                                 context.SearchEnvelope(), selection.variables, {});
            ZorvoDSG::ZorvoJSONFeatureSet::s_Write(featureClass, filter, writer, [&] {
                if (buffer.GetSize() >= ZorvoDSG::ZorvoJSONFeatureSet::kStreamChunk) {
                    flush();
                }
            });
        }
    } catch (...) {
        // Text already out cannot be taken back: the document is ended where it stopped.
        if (bWritten) {
            ZorvoDSG::CloseOpenLevels(writer);
            flush();
        }
        throw;
    }
    flush();
}

uint64_t ScanClass(ZorvoDSG::BasicFeatureClass& featureClass, const ClassSelection& selection,
                   const ScanSettings& settings, FeatureWriter& writer) {
    ClassContext context(featureClass, selection, settings);
    const ZorvoDSG::SpatialFilter filter(nullptr, ZorvoDSG::SpaceTime::eSpatialRelationUndefined,
                                         context.SearchEnvelope(), selection.variables, selection.observations);
    const std::shared_ptr<ZorvoDSG::IFeatureCursor> cursor = featureClass.Search(filter);
    const std::shared_ptr<ZorvoDSG::Feature> feature = cursor->CreateEmptyFeature();
    // One hook per kind of feature; profiles and trajectories join here when the library reads them.
    if (auto* point = dynamic_cast<ZorvoDSG::PointFeature*>(feature.get())) {
        return ScanPoints(*cursor, feature, *point, context, settings, writer);
    }
    if (auto* profile = dynamic_cast<ZorvoDSG::ProfileFeature*>(feature.get())) {
        return ScanProfiles(*cursor, feature, *profile, featureClass, selection, context, settings, writer);
    }
    if (auto* trajectory = dynamic_cast<ZorvoDSG::TrajectoryFeature*>(feature.get())) {
        return ScanTrajectories(*cursor, feature, *trajectory, selection, context, settings, writer);
    }
    throw std::runtime_error("zdsg features does not write " + ZorvoDSG::FeatureTypeName(featureClass.FeatureType()) +
                             " features yet");
}

}  // namespace zdsg
