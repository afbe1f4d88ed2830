#pragma once
// Which variables `zdsg features` writes, and under which column. The run has one list of columns
// for all its feature classes (a CSV file has one header): the --vars names as given, or else every
// instance variable of every class, by name, in order of first appearance. A class that lacks a
// column leaves it empty. A variable named like a fixed column (class, oid, time, x, y, z, crs) gets
// an underscore appended, as often as needed to be unique.

#include <map>
#include <string>
#include <vector>

namespace ZorvoDSG {
class IFeatureClass;
class Variable;
}

namespace zdsg {

// The variables of one class that go to the output.
struct ClassSelection {
    std::vector<std::string> variables;  // group-qualified names, as the search filter takes them
    std::vector<size_t> columns;         // the column of each, in the run's list
    std::vector<std::string> observations;  // observation variables (profiles, time series, trajectories)
    std::vector<size_t> observationColumns;
};

class ColumnPlan {
public:
    // `requested`: the --vars names (plain or group-qualified); empty selects every variable.
    explicit ColumnPlan(const std::vector<std::string>& requested);

    // The selection for this class; adds the columns it brings when no names were requested.
    ClassSelection Select(const ZorvoDSG::IFeatureClass& featureClass);

    const std::vector<std::string>& Columns() const { return m_columns; }
    // Requested names that no class selected so far has.
    std::vector<std::string> UnmatchedRequests() const;

private:
    size_t AddColumn(const std::string& key);
    void SelectFrom(const std::vector<const ZorvoDSG::Variable*>& variables, std::vector<std::string>& names,
                    std::vector<size_t>& columns);

    bool m_bRequested;
    std::vector<std::string> m_columns;     // output names
    std::map<std::string, size_t> m_byKey;  // variable name (or requested name) -> column
    std::vector<std::string> m_requested;
    std::vector<bool> m_bMatched;
};

}  // namespace zdsg
