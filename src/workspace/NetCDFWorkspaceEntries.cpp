// The entries of a workspace: adding files and directories (which opens their files), removing them,
// and reconciling the whole list with a new one.

#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <string>
#include <system_error>
#include <variant>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>
#include <zorvodsg/workspace/detail/DirectoryScan.h>
#include <zorvodsg/workspace/detail/WorkspacePaths.h>

namespace ZorvoNetCDFDSG {

using ZorvoDSG::System::eLogCFVersionTooOld;
using ZorvoDSG::System::eLogFileRecordRemoved;
using ZorvoDSG::System::eLogFileRefused;
using ZorvoDSG::System::eLogNoFeatureType;
using ZorvoDSG::System::eLogOpeningFile;

namespace {

bool bCFVersionTooOld(const ZorvoDSG::VersionNumber& version) {
    return version.major == 0 || (version.major == 1 && version.minor < 6);
}

std::wstring WhatOf(const std::exception& e) {
    if (const auto* exception = dynamic_cast<const ZorvoDSG::Exception*>(&e)) {
        std::wstring text = ZorvoDSG::Exception::s_NcErrToWString(exception->NcErr()).Str();
        if (!exception->wsDetail().empty()) {
            text += L": " + exception->wsDetail();
        }
        return text;
    }
    if (dynamic_cast<const std::bad_variant_access*>(&e) != nullptr) {
        return L"an attribute that must be text holds another type";
    }
    return ZorvoDSG::Host::Utf8ToWide(e.what());
}

// Paths are UTF-8 bytes here; path::wstring() would convert through the C library's locale and
// throw for "é" in a program that never set one.
std::wstring PathText(const std::filesystem::path& path) { return ZorvoDSG::Host::Utf8ToWide(path.string()); }

std::wstring RefusalText(const std::filesystem::path& path, const std::string& group, const std::exception& e) {
    std::wstring text = PathText(path);
    if (!group.empty()) {
        text += L" (group " + ZorvoDSG::Host::Utf8ToWide(group) + L")";
    }
    return text + L": " + WhatOf(e);
}

// conf.json is JSON text: a path that is not UTF-8 would be written with U+FFFD in place of its
// odd bytes and not be found again by the next run, so it is refused before it becomes an entry.
void ThrowIfNotRecordable(const std::filesystem::path& path) {
    if (!ZorvoDSG::Host::bIsValidUtf8(path.native())) {
        throw std::filesystem::filesystem_error("path is not UTF-8 text and cannot be recorded in conf.json", path,
                                                std::make_error_code(std::errc::illegal_byte_sequence));
    }
}

// Clears the reconciling flag however the reconciliation ends.
class ReconcilingScope {
public:
    explicit ReconcilingScope(bool& bReconciling) : m_bReconciling(bReconciling) { m_bReconciling = true; }
    ReconcilingScope(const ReconcilingScope&) = delete;
    ReconcilingScope& operator=(const ReconcilingScope&) = delete;
    ~ReconcilingScope() { m_bReconciling = false; }

private:
    bool& m_bReconciling;
};

}  // namespace

void NetCDFWorkspace::AddFile(std::filesystem::path file, ZorvoDSG::eFeatureType hint,
                              ZorvoDSG::Host::IXMLDOMDocument* ncml, bool /*unused*/) {
    const std::lock_guard lock(m_mutex);
    AddFileLocked(std::move(file), hint, ncml);
}

void NetCDFWorkspace::AddDirectory(const std::filesystem::path& directory, ZorvoDSG::eFeatureType hint,
                                   ZorvoDSG::Host::IXMLDOMDocument* ncml, bool /*unused*/, bool includeSubdirs) {
    const std::lock_guard lock(m_mutex);
    AddDirectoryLocked(directory, hint, ncml, includeSubdirs);
}

void NetCDFWorkspace::AddFileLocked(std::filesystem::path file, ZorvoDSG::eFeatureType hint,
                                    ZorvoDSG::Host::IXMLDOMDocument* ncml) {
    file = detail::NormalisedPath(file);
    if (!m_path.empty()) {
        ThrowIfNotRecordable(file);
    }
    const bool bKnown = std::any_of(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.path == file; });
    if (bKnown) {
        return;
    }
    m_entries.push_back({file, false, NextEntryId()});
    TryAddFileInternal(m_entries.back(), hint, ncml);
}

void NetCDFWorkspace::AddDirectoryLocked(const std::filesystem::path& directory, ZorvoDSG::eFeatureType hint,
                                         ZorvoDSG::Host::IXMLDOMDocument* ncml, bool includeSubdirs) {
    const std::filesystem::path path = detail::NormalisedPath(directory);
    if (!m_path.empty()) {
        ThrowIfNotRecordable(path);
    }
    const bool bKnown = std::any_of(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.path == path; });
    if (bKnown) {
        return;
    }
    m_entries.push_back({path, includeSubdirs, NextEntryId()});
    const Entry entry = m_entries.back();
    ScanDirectory(entry, hint, ncml);
}

// Each file tried on its own: one file (or subdirectory) that cannot be read does not end the scan.
void NetCDFWorkspace::ScanDirectory(const Entry& entry, ZorvoDSG::eFeatureType hint,
                                    ZorvoDSG::Host::IXMLDOMDocument* ncml) {
    const auto files = detail::ScanNetCDFFiles(
        entry.path, entry.includeSubdirs, [this](const std::filesystem::path& directory, const std::error_code& ec) {
            m_log.AddMessage(eLogFileRefused, PathText(directory) + L": " + ZorvoDSG::Host::Utf8ToWide(ec.message()));
        });
    for (const auto& file : files) {
        TryAddScannedFile({file, false, NextEntryId()}, hint, ncml);
    }
}

void NetCDFWorkspace::TryAddScannedFile(const Entry& entry, ZorvoDSG::eFeatureType hint,
                                        ZorvoDSG::Host::IXMLDOMDocument* ncml) {
    try {
        TryAddFileInternal(entry, hint, ncml);
    } catch (const std::exception& e) {
        m_log.AddMessage(eLogFileRefused, RefusalText(entry.path, "", e));
    }
}

bool NetCDFWorkspace::bMarkOpened(const std::filesystem::path& path) {
    bool bOpened = false;
    for (FileRecord& record : m_files) {
        if (detail::bSamePath(record.file->NcPath(), path)) {
            record.bSeen = m_bReconciling;
            bOpened = true;
        }
    }
    return bOpened;
}

void NetCDFWorkspace::TryAddFileInternal(const Entry& entry, ZorvoDSG::eFeatureType hint,
                                         ZorvoDSG::Host::IXMLDOMDocument* ncml) {
    if (bMarkOpened(entry.path)) {
        return;  // a file is never opened twice
    }
    m_log.AddMessage(eLogOpeningFile, PathText(entry.path));
    std::vector<std::shared_ptr<NetCDFFile>> datasets;
    try {
        datasets = NetCDFFile::s_Open(entry.path, entry.id, ncml, m_log, m_openOptions);
    } catch (const ZorvoDSG::Exception&) {
        throw;
    } catch (const std::exception& e) {
        // Not the library's own refusal (an attribute of an unexpected type, say): the file is refused.
        m_log.AddMessage(eLogFileRefused, RefusalText(entry.path, "", e));
        return;
    }
    const auto self = shared_from_this();
    std::optional<ZorvoDSG::Exception> firstRefusal;
    for (const auto& dataset : datasets) {
        m_files.push_front({{}, dataset, 0, m_bReconciling});
        try {
            if (dataset->FeatureType() == ZorvoDSG::eFeatureUnknown) {
                m_log.AddMessage(eLogNoFeatureType, PathText(entry.path));
            }
            if (bCFVersionTooOld(dataset->CFConventionsVersion())) {
                m_log.AddMessage(eLogCFVersionTooOld, PathText(entry.path));
            }
            m_files.front().featureClasses.push_back(ZorvoDSG::BasicFeatureClass::s_Open(dataset, hint, self));
        } catch (const std::exception& e) {
            m_files.pop_front();
            // A group without variables (the root of a file whose data is in its groups) holds nothing
            // to refuse; message 4 has said that it has no feature type.
            if (!dataset->Variables().empty()) {
                m_log.AddMessage(eLogFileRefused, RefusalText(entry.path, dataset->FullGroupName(), e));
            }
            const auto* refusal = dynamic_cast<const ZorvoDSG::Exception*>(&e);
            if (refusal != nullptr && !firstRefusal) {
                firstRefusal = *refusal;
            }
        }
    }
    // A workspace left without any file says why; otherwise the refused groups are in the log.
    if (m_files.empty() && firstRefusal) {
        throw *firstRefusal;
    }
}

template <class Matches>
void NetCDFWorkspace::RemoveMatching(Matches&& matches) {
    for (auto record = m_files.begin(); record != m_files.end();) {
        if (!record->bSeen && matches(record->file->NcPath())) {
            m_log.AddMessage(eLogFileRecordRemoved, PathText(record->file->NcPath()));
            record = m_files.erase(record);
        } else {
            ++record;
        }
    }
    std::erase_if(m_entries, [&](const Entry& entry) { return matches(entry.path); });
}

void NetCDFWorkspace::RemoveFile(std::filesystem::path file) {
    const std::lock_guard lock(m_mutex);
    RemoveMatching([&file](const std::filesystem::path& path) { return detail::bSamePath(path, file); });
}

void NetCDFWorkspace::RemoveDirectory(std::filesystem::path directory) {
    const std::lock_guard lock(m_mutex);
    RemoveMatching(
        [&directory](const std::filesystem::path& path) { return detail::bInsideDirectory(path, directory); });
}

std::shared_ptr<ZorvoDSG::System::ILog> NetCDFWorkspace::ReconcileEntries(
    const std::vector<std::filesystem::path>& paths, ZorvoDSG::eFeatureType hint,
    ZorvoDSG::Host::IXMLDOMDocument* ncml, bool includeSubdirs) {
    const std::lock_guard lock(m_mutex);
    if (m_cConnections.load() > 1) {
        auto log = std::make_shared<NetCDFWorkspaceLog>();
        log->AddMessage(ZorvoDSG::System::eLogTooManyConnections,
                        L"cannot modify workspace while multiple connections are active");
        return log;
    }
    m_log.Clear();
    // A path that cannot be opened ends the reconciliation with its exception; the workspace is then
    // left as it was before, not with half of the new list (the log keeps what was tried).
    const std::vector<Entry> previousEntries = m_entries;
    const std::list<FileRecord> previousFiles = m_files;
    m_entries.clear();
    for (FileRecord& record : m_files) {
        record.bSeen = false;
    }
    const ReconcilingScope reconciling(m_bReconciling);
    try {
        for (const auto& path : paths) {
            if (detail::bHasNetCDFExtension(path)) {
                AddFileLocked(path, hint, ncml);
            } else {
                AddDirectoryLocked(path, hint, ncml, includeSubdirs);
            }
        }
    } catch (...) {
        m_entries = previousEntries;
        m_files = previousFiles;
        throw;
    }
    for (auto record = m_files.begin(); record != m_files.end();) {
        if (!record->bSeen) {
            m_log.AddMessage(eLogFileRecordRemoved, PathText(record->file->NcPath()));
            record = m_files.erase(record);
        } else {
            ++record;
        }
    }
    return std::make_shared<NetCDFWorkspaceLog>(m_log);
}

void NetCDFWorkspace::ReopenEntries(ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml) {
    const std::lock_guard lock(m_mutex);
    const std::vector<Entry> entries = m_entries;
    for (const Entry& entry : entries) {
        std::error_code ec;
        if (!std::filesystem::is_directory(entry.path, ec)) {
            TryAddScannedFile(entry, hint, ncml);
            continue;
        }
        try {
            ScanDirectory(entry, hint, ncml);
        } catch (const std::filesystem::filesystem_error& e) {
            m_log.AddMessage(eLogFileRefused, RefusalText(entry.path, "", e));
        }
    }
}

}  // namespace ZorvoNetCDFDSG
