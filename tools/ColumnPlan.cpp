#include "ColumnPlan.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <zorvodsg/featureclass/IFeatureClass.h>
#include <zorvodsg/featureclass/IFeatureClassObservations.h>

namespace zdsg {

namespace {

constexpr std::array<std::string_view, 7> kFixedColumns = {"class", "oid", "time", "x", "y", "z", "crs"};

bool bFixed(const std::string& name) {
    return std::find(kFixedColumns.begin(), kFixedColumns.end(), name) != kFixedColumns.end();
}

}  // namespace

ColumnPlan::ColumnPlan(const std::vector<std::string>& requested) : m_bRequested(!requested.empty()) {
    for (const auto& name : requested) {
        if (m_byKey.find(name) == m_byKey.end()) {
            AddColumn(name);
            m_requested.push_back(name);
        }
    }
    m_bMatched.assign(m_requested.size(), false);
}

size_t ColumnPlan::AddColumn(const std::string& key) {
    std::string name = key;
    while (bFixed(name) || std::find(m_columns.begin(), m_columns.end(), name) != m_columns.end()) {
        name += '_';
    }
    m_columns.push_back(name);
    m_byKey.emplace(key, m_columns.size() - 1);
    return m_columns.size() - 1;
}

void ColumnPlan::SelectFrom(const std::vector<const ZorvoDSG::Variable*>& variables, std::vector<std::string>& names,
                            std::vector<size_t>& columns) {
    if (!m_bRequested) {
        for (const ZorvoDSG::Variable* variable : variables) {
            const auto found = m_byKey.find(variable->Name());
            names.push_back(variable->NameWithFullGroupName());
            columns.push_back(found != m_byKey.end() ? found->second : AddColumn(variable->Name()));
        }
        return;
    }
    for (size_t i = 0; i < m_requested.size(); ++i) {
        const std::string& name = m_requested[i];
        const auto variable = std::find_if(variables.begin(), variables.end(), [&name](const ZorvoDSG::Variable* v) {
            return v->Name() == name || v->NameWithFullGroupName() == name;
        });
        if (variable != variables.end()) {
            names.push_back((*variable)->NameWithFullGroupName());
            columns.push_back(m_byKey.at(name));
            m_bMatched[i] = true;
        }
    }
}

ClassSelection ColumnPlan::Select(const ZorvoDSG::IFeatureClass& featureClass) {
    ClassSelection selection;
    std::vector<const ZorvoDSG::Variable*> instance;
    for (const auto& variable : featureClass.InstanceVariables()) {
        instance.push_back(&variable);
    }
    SelectFrom(instance, selection.variables, selection.columns);
    if (const auto* observations = dynamic_cast<const ZorvoDSG::IFeatureClassObservations*>(&featureClass)) {
        std::vector<const ZorvoDSG::Variable*> runs;
        for (const auto& variable : observations->ObservationVariables()) {
            runs.push_back(&variable);
        }
        SelectFrom(runs, selection.observations, selection.observationColumns);
    }
    return selection;
}

std::vector<std::string> ColumnPlan::UnmatchedRequests() const {
    std::vector<std::string> unmatched;
    for (size_t i = 0; i < m_requested.size(); ++i) {
        if (!m_bMatched[i]) {
            unmatched.push_back(m_requested[i]);
        }
    }
    return unmatched;
}

}  // namespace zdsg
