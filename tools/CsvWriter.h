#pragma once
// CSV as RFC 4180 has it: a header line, CRLF line ends, fields quoted when they hold a comma, a
// quote or a line break. Columns: class, oid, time, x, y, z, crs (with --native-crs only), then the
// variables. A fill value, NaN or an absent coordinate is an empty field.

#include <span>
#include <string_view>

#include "FeatureWriter.h"

namespace zdsg {

class OutputFile;

class CsvWriter final : public FeatureWriter {
public:
    CsvWriter(OutputFile& out, bool bNativeCrs);

    void Begin(const std::vector<std::string>& columns) override;
    void Point(const PointRecord& point) override;
    void Profile(const ProfileRecord& profile) override;
    void Trajectory(const TrajectoryRecord& trajectory) override;
    void End() override;

private:
    void Text(std::string_view text);
    void Number(double value, bool bFloat);
    void Value(const ZorvoDSG::System::NcVariant* value);
    // One CSV row: the fixed columns, then the values.
    void Row(const FeatureRecord& record, std::string_view time, double x, double y, double z, bool bFloatXY,
             bool bFloatZ, std::span<const ZorvoDSG::System::NcVariant* const> values);

    OutputFile& m_out;
    bool m_bNativeCrs;
};

}  // namespace zdsg
