#pragma once
// One JSON document on a stream: {"formatVersion":1, "zdsg":..., "files":[...], "summary":{...}}; the
// keys are described in the README.

#include <iosfwd>
#include <memory>

#include "Report.h"

namespace zdsg {

// The document's format: raised when a key is removed or changes its meaning, not for new keys.
inline constexpr int kJsonFormatVersion = 1;

class JsonReport final : public Report {
public:
    explicit JsonReport(std::ostream& out);
    ~JsonReport() override;

    void Begin(const RunInfo& info) override;
    void File(const FileReport& file) override;
    void End(const Summary& summary) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace zdsg
