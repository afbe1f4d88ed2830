#pragma once
// WKSEnvelopeZ::Contains for one envelope and many points, with the envelope's own tests done once:
// a point cursor runs it for every point of the file, and the point tests are then comparisons
// without branches (points fall in and out of an envelope at random, which defeats prediction).

#include <cmath>

#include <zorvodsg/host/Wks.h>

namespace ZorvoNetCDFDSG::detail {

class PointInEnvelope {
public:
    explicit PointInEnvelope(const ZorvoDSG::Host::WKSEnvelopeZ& envelope)
        : m_envelope(envelope),
          m_bUsable(!envelope.IsEmpty() && std::isfinite(envelope.XMin) && std::isfinite(envelope.XMax) &&
                    std::isfinite(envelope.YMin) && std::isfinite(envelope.YMax)),
          m_bZUnrestricted(std::isnan(envelope.ZMin) || std::isnan(envelope.ZMax)) {}

    bool operator()(const ZorvoDSG::Host::WKSPointZ& point) const {
        // With finite bounds a NaN or infinite coordinate fails a comparison by itself, which is
        // the finiteness test Contains makes; a NaN z leaves Z unrestricted, as it does there.
        const bool bXY = (point.x >= m_envelope.XMin) & (point.x <= m_envelope.XMax) &
                         (point.y >= m_envelope.YMin) & (point.y <= m_envelope.YMax);
        const bool bZ = m_bZUnrestricted | std::isnan(point.z) |
                        ((point.z >= m_envelope.ZMin) & (point.z <= m_envelope.ZMax));
        return m_bUsable & bXY & bZ;
    }

private:
    ZorvoDSG::Host::WKSEnvelopeZ m_envelope;
    bool m_bUsable;
    bool m_bZUnrestricted;
};

}  // namespace ZorvoNetCDFDSG::detail
