#include <zorvodsg/workspace/NetCDFWorkspace.h>

#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/LogCodes.h>
#include <zorvodsg/workspace/detail/AtomicFile.h>
#include <zorvodsg/workspace/detail/WorkspaceConf.h>
#include <zorvodsg/workspace/detail/WorkspacePaths.h>

using ZorvoDSG::Host::IXMLDOMDocument;
using ZorvoDSG::Host::IXMLDOMDocumentPtr;
using ZorvoDSG::Host::XmlParseError;

namespace ZorvoNetCDFDSG {

const std::string NetCDFWorkspace::s_sCurrentVersion = "0.1";

namespace {

// Whether the file can be opened for reading, as opening it as a stream would tell.
bool CanOpen(const std::filesystem::path& path) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) {
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    return static_cast<bool>(in);
}

void ThrowIfMissing(const std::filesystem::path& path) {
    if (!std::filesystem::exists(path)) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNetCDFWorkspaceDoesNotExist, L"NetCDF workspace does not exist", path);
    }
}

std::shared_ptr<NetCDFWorkspaceLog> CopyOf(const NetCDFWorkspaceLog& log) {
    return std::make_shared<NetCDFWorkspaceLog>(log);
}

std::shared_ptr<NetCDFWorkspaceLog> TooManyConnectionsLog() {
    auto log = std::make_shared<NetCDFWorkspaceLog>();
    log->AddMessage(ZorvoDSG::System::eLogTooManyConnections,
                    L"cannot modify workspace while multiple connections are active");
    return log;
}

}  // namespace

NetCDFWorkspace::NetCDFWorkspace() : m_version(s_sCurrentVersion) {}

NetCDFWorkspace::NetCDFWorkspace(std::filesystem::path path, std::string version)
    : m_version(std::move(version)), m_path(std::move(path)) {
    ThrowIfMissing(m_path);
}

NetCDFWorkspace::NetCDFWorkspace(std::filesystem::path path) : m_path(std::move(path)) {
    ThrowIfMissing(m_path);
    if (!std::filesystem::is_directory(m_path)) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace, L"not a directory", m_path);
    }
    m_confOnDisk = ReadConfIfAny();
    if (m_confOnDisk) {
        FromJSON(*m_confOnDisk);
    }
}

std::optional<std::string> NetCDFWorkspace::ReadConfIfAny() const {
    const std::filesystem::path conf = m_path / detail::kConfFileName;
    if (!std::filesystem::exists(conf)) {
        return std::nullopt;
    }
    return detail::ReadConfText(conf);
}

NetCDFWorkspace::~NetCDFWorkspace() = default;

std::shared_ptr<NetCDFWorkspace> NetCDFWorkspace::s_Create(std::filesystem::path path) {
    // "ws/" would otherwise have "ws" as its parent, made below, and then be refused as existing.
    path = detail::NormalisedPath(path);
    if (std::filesystem::exists(path)) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNetCDFWorkspaceExists, L"NetCDF workspace already exists", path);
    }
    if (path.has_parent_path()) {
        std::filesystem::create_directories(path.parent_path());
    }
    // Whoever creates the directory owns it: a directory made meanwhile by someone else is theirs.
    if (!std::filesystem::create_directory(path)) {
        throw ZorvoDSG::Exception(ZorvoDSG::eNetCDFWorkspaceExists, L"NetCDF workspace already exists", path);
    }
    try {
        return std::shared_ptr<NetCDFWorkspace>(new NetCDFWorkspace(path, s_sCurrentVersion));
    } catch (...) {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);  // only while still empty
        throw;
    }
}

std::shared_ptr<NetCDFWorkspace> NetCDFWorkspace::s_Open(const std::filesystem::path& path) {
    return std::shared_ptr<NetCDFWorkspace>(new NetCDFWorkspace(detail::NormalisedPath(path)));
}

std::shared_ptr<NetCDFWorkspace> NetCDFWorkspace::s_GetInMemoryWorkspace() {
    // Made once, by whichever thread comes first, and never destroyed: it lives until the process ends,
    // after the static objects that closing its files would need.
    static const auto* const s_spInMemoryWorkspace =
        new std::shared_ptr<NetCDFWorkspace>(new NetCDFWorkspace());
    return *s_spInMemoryWorkspace;
}

IXMLDOMDocumentPtr NetCDFWorkspace::s_OpenNcMLDocument(std::filesystem::path path) {
    const auto extension = path.extension().native();
    if (extension != ".xml" && extension != ".ncml")
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotOpenNcmlFile, L"", path);
    if (!CanOpen(path))
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotOpenNcmlFile, L"", path);

    XmlParseError error;
    IXMLDOMDocumentPtr document = IXMLDOMDocument::LoadFile(path, error);
    if (!document) {
        throw ZorvoDSG::Exception(ZorvoDSG::eCannotParseNcmlFile,
                                  L"line: " + std::to_wstring(error.line) + L", char: " +
                                      std::to_wstring(error.linepos) + L", " + error.reason + L"\n",
                                  path);
    }
    return document;
}

void NetCDFWorkspace::Connect() {
    const std::lock_guard lock(m_mutex);
    if (m_cConnections.fetch_add(1) != 0) {
        return;
    }
    try {
        for (FileRecord& record : m_files) {
            record.file->Connect();
        }
    } catch (...) {
        DisconnectFiles();
        m_cConnections.fetch_sub(1);
        throw;
    }
}

void NetCDFWorkspace::Disconnect() {
    const std::lock_guard lock(m_mutex);
    if (m_cConnections.load() == 0) {
        return;
    }
    if (m_cConnections.fetch_sub(1) == 1) {
        DisconnectFiles();
    }
}

void NetCDFWorkspace::DisconnectFiles() {
    for (FileRecord& record : m_files) {
        record.file->Disconnect();
    }
}

std::shared_ptr<ZorvoDSG::System::ILog> NetCDFWorkspace::Commit(ZorvoDSG::Host::ITrackCancel* cancel) {
    const std::lock_guard lock(m_mutex);
    if (!m_path.empty()) {
        ZorvoDSG::ZorvoJSONBuffer buffer;
        ZorvoDSG::ZorvoJSONWriter writer(buffer);
        ToJSON(writer);
        std::string text(buffer.GetString(), buffer.GetSize());
        text += '\n';
        // Another program (or another object of this one) that committed since this workspace read or
        // wrote conf.json would lose its entries to this write: refused instead, so that the caller
        // opens the workspace again and redoes its change on top of theirs.
        if (ReadConfIfAny() != m_confOnDisk) {
            throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace,
                                      L"conf.json was changed by another program since this workspace read it; "
                                      L"open the workspace again",
                                      m_path);
        }
        try {
            detail::ReplaceFileContent(m_path / detail::kConfFileName, text);
        } catch (const std::filesystem::filesystem_error& e) {
            throw ZorvoDSG::Exception(ZorvoDSG::eNotANetCDFWorkspace,
                                      L"conf.json could not be written: " + ZorvoDSG::Host::Utf8ToWide(e.what()),
                                      m_path);
        }
        m_confOnDisk = std::move(text);
    }
    return Refresh(cancel);
}

std::shared_ptr<ZorvoDSG::System::ILog> NetCDFWorkspace::Refresh(ZorvoDSG::Host::ITrackCancel* /*cancel*/) {
    m_log.Clear();
    return CopyOf(m_log);
}

std::shared_ptr<ZorvoDSG::System::ILog> NetCDFWorkspace::SetEmpty() {
    const std::lock_guard lock(m_mutex);
    return SetEmptyImpl();
}

std::shared_ptr<ZorvoDSG::System::ILog> NetCDFWorkspace::SetEmptyImpl() {
    if (m_cConnections.load() > 1) {
        return TooManyConnectionsLog();
    }
    m_files.clear();
    m_entries.clear();
    m_bReconciling = false;
    m_log.Clear();
    return CopyOf(m_log);
}

void NetCDFWorkspace::Delete() {
    const std::lock_guard lock(m_mutex);
    SetEmptyImpl();
    if (m_path.empty()) {
        return;
    }
    detail::RemoveConfFiles(m_path);
    m_confOnDisk.reset();
    // The directory goes only when nothing of anybody else's is left in it.
    std::error_code ec;
    if (std::filesystem::is_directory(m_path, ec) && std::filesystem::is_empty(m_path, ec)) {
        std::filesystem::remove(m_path, ec);
    }
}

void NetCDFWorkspace::SetOpenOptions(const OpenOptions& options) {
    const std::lock_guard lock(m_mutex);
    m_openOptions = options;
}

std::vector<NetCDFWorkspace::Entry> NetCDFWorkspace::Entries() const {
    const std::lock_guard lock(m_mutex);
    return m_entries;
}

std::vector<NetCDFWorkspace::FileRecord> NetCDFWorkspace::FileRecords() const {
    const std::lock_guard lock(m_mutex);
    return {m_files.begin(), m_files.end()};
}

}  // namespace ZorvoNetCDFDSG
