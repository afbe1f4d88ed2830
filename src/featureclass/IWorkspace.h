#pragma once
// A workspace as feature classes and the host see it: connections, the saved state, the log into which
// opening files and building schemas write what they skipped, and the queries across the feature
// classes of all its files. NetCDFWorkspace is the implementation.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <zorvodsg/host/ITrackCancel.h>
#include <zorvodsg/netcdf/FeatureType.h>
#include <zorvodsg/values/ILog.h>

namespace ZorvoDSG {

class BasicFeatureClass;
class BasicObservationFeatureClass;
class IFeatureClass;
class SpatialFilter;

class IWorkspace {
public:
    // The last disconnection closes the workspace's files; the first connection opens them again.
    virtual void Disconnect() = 0;
    virtual void Connect() = 0;
    // Saves the workspace's state; returns the log of the operation.
    virtual std::shared_ptr<System::ILog> Commit(Host::ITrackCancel* cancel) = 0;
    virtual std::shared_ptr<System::ILog> Refresh(Host::ITrackCancel* cancel) = 0;
    virtual void Delete() = 0;
    virtual System::ILog& CurrentLog() = 0;

    // The classes named in `requests` (class name, compared ignoring case; file, empty for any file).
    virtual std::vector<std::shared_ptr<BasicFeatureClass>> BasicFeatureClasses(
        const std::vector<std::pair<std::string, std::filesystem::path>>& requests) = 0;
    // The classes of one feature type; eFeatureUnknown for all of them.
    virtual std::vector<std::shared_ptr<BasicFeatureClass>> BasicFeatureClasses(eFeatureType type) = 0;
    // For each class, the full names of its instance (observation) variables in the order that the
    // compare method (bits: name, standard name, full name, type, units) gives.
    virtual std::vector<std::vector<std::string>> CommonInstanceVars(
        const std::vector<std::shared_ptr<BasicFeatureClass>>& classes, uint32_t method) = 0;
    virtual std::vector<std::vector<std::string>> CommonObservationVars(
        const std::vector<std::shared_ptr<BasicObservationFeatureClass>>& classes, uint32_t method) = 0;
    virtual std::variant<std::shared_ptr<IFeatureClass>, std::shared_ptr<System::ILog>> TryMakeQueryFeatureClass(
        std::string name, eFeatureType type, const std::vector<std::string>& names, const SpatialFilter& filter) = 0;

protected:
    IWorkspace() = default;
    IWorkspace(const IWorkspace&) = default;
    IWorkspace& operator=(const IWorkspace&) = default;
    ~IWorkspace() = default;  // released through the shared pointer of the concrete workspace
};

}  // namespace ZorvoDSG
