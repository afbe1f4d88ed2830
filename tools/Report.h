#pragma once
// Where the findings go: one call per file as soon as it has been read, then the summary.

#include "DatasetReport.h"

namespace zdsg {

class Report {
public:
    virtual ~Report() = default;
    virtual void Begin(const RunInfo& info) = 0;
    virtual void File(const FileReport& file) = 0;
    virtual void End(const Summary& summary) = 0;
};

}  // namespace zdsg
