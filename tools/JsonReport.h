#pragma once
// One JSON document on a stream: {"zdsg":..., "files":[...], "summary":{...}}; see README-json.md.

#include <iosfwd>
#include <memory>

#include "Report.h"

namespace zdsg {

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
