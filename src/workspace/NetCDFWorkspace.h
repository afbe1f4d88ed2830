#pragma once
// A workspace of netCDF files: a directory whose conf.json records the files and directories the
// caller added (the entries) and the feature classes found in each file, or the process's one
// in-memory workspace. Adding an entry opens its files at once, one record per netCDF group that
// holds data, and makes their feature classes; the last Disconnect closes the files and the next
// Connect opens them again.
//
// Threads: Connect and Disconnect may be called from any thread. Every other operation that changes
// the workspace (Commit, the adds and removes, ReconcileEntries, SetEmpty, Delete) takes the same
// mutex, so none of them runs while another does or while files are being opened or closed. The
// queries and the feature classes, cursors and features read from the workspace's files are for one
// thread at a time, and only while that thread holds a connection: netCDF-C is not thread-safe, and
// the library serialises its calls into it.
//
// Failures: s_Create, s_Open and Commit throw ZorvoDSG::Exception (eNetCDFWorkspaceExists,
// eNetCDFWorkspaceDoesNotExist, eNotANetCDFWorkspace); file-system failures are
// std::filesystem::filesystem_error. What only drops one file or group goes to CurrentLog().

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <zorvodsg/featureclass/BasicFeatureClass.h>
#include <zorvodsg/featureclass/IWorkspace.h>
#include <zorvodsg/host/xml/XmlDom.h>
#include <zorvodsg/json/ZorvoJSONWriter.h>
#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/netcdf/OpenOptions.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace ZorvoNetCDFDSG {

class NetCDFWorkspace final : public ZorvoDSG::IWorkspace, public std::enable_shared_from_this<NetCDFWorkspace> {
public:
    // What the caller added: a file, or a directory with or without its subdirectories.
    struct Entry {
        std::filesystem::path path;  // lexically normalised
        bool includeSubdirs = false;
        long id = 0;  // the file id of the datasets opened for it
    };

    // One opened dataset (a file, or one group of a netCDF-4 file) with its feature classes.
    struct FileRecord {
        std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> featureClasses;
        std::shared_ptr<NetCDFFile> file;
        uint64_t timestamp = 0;
        bool bSeen = false;  // met by the running (or last) reconciliation
    };

    static const std::string s_sCurrentVersion;  // "0.1"

    // Creates the directory (and its missing parents) for a new workspace. conf.json is written by
    // the first Commit. eNetCDFWorkspaceExists when `path` exists.
    static std::shared_ptr<NetCDFWorkspace> s_Create(std::filesystem::path path);
    // Opens a workspace directory and reads back its conf.json (version and entries), when there is
    // one; ReopenEntries opens the entries' files. eNetCDFWorkspaceDoesNotExist when `path` does not
    // exist, eNotANetCDFWorkspace (with the reason) when conf.json is not one this library wrote.
    static std::shared_ptr<NetCDFWorkspace> s_Open(const std::filesystem::path& path);
    // The process's in-memory workspace, made on the first call.
    static std::shared_ptr<NetCDFWorkspace> s_GetInMemoryWorkspace();
    // Opens and parses an NcML document. The extension must be exactly ".xml" or ".ncml".
    // Throws ZorvoDSG::Exception eCannotOpenNcmlFile for another extension or a file that cannot be
    // opened, and eCannotParseNcmlFile ("line: L, char: C, reason") when it is not acceptable XML.
    static ZorvoDSG::Host::IXMLDOMDocumentPtr s_OpenNcMLDocument(std::filesystem::path path);

    NetCDFWorkspace(const NetCDFWorkspace&) = delete;
    NetCDFWorkspace& operator=(const NetCDFWorkspace&) = delete;
    ~NetCDFWorkspace();

    // IWorkspace
    void Disconnect() override;
    void Connect() override;
    // Writes conf.json: into a temporary file of the directory, flushed, then renamed over the old
    // one, so that a failure leaves the old file as it was; the failure is eNotANetCDFWorkspace with
    // the reason. A conf.json that is no longer what this object last read or wrote (another program
    // committed meanwhile) is not overwritten: eNotANetCDFWorkspace, and the workspace must be opened
    // again. This detects, it does not lock: programs that change one workspace at once must take
    // turns themselves (zdsg locks the directory). Nothing is written for the in-memory workspace.
    // Returns Refresh's log.
    std::shared_ptr<ZorvoDSG::System::ILog> Commit(ZorvoDSG::Host::ITrackCancel* cancel) override;
    // Empties the workspace's log; returns an (empty) copy of it.
    std::shared_ptr<ZorvoDSG::System::ILog> Refresh(ZorvoDSG::Host::ITrackCancel* cancel) override;
    // Empties the workspace (as SetEmpty, unless several connections are active), then removes the
    // files the workspace wrote and its directory if nothing else is left in it. A user's data is
    // never removed. The in-memory workspace is only emptied.
    void Delete() override;
    ZorvoDSG::System::ILog& CurrentLog() override { return m_log; }
    std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> BasicFeatureClasses(
        const std::vector<std::pair<std::string, std::filesystem::path>>& requests) override;
    std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> BasicFeatureClasses(ZorvoDSG::eFeatureType type) override;
    std::vector<std::vector<std::string>> CommonInstanceVars(
        const std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>>& classes, uint32_t method) override;
    std::vector<std::vector<std::string>> CommonObservationVars(
        const std::vector<std::shared_ptr<ZorvoDSG::BasicObservationFeatureClass>>& classes, uint32_t method) override;
    // Makes no class: the workspace's log is emptied and given message 7, and a copy of it returned.
    std::variant<std::shared_ptr<ZorvoDSG::IFeatureClass>, std::shared_ptr<ZorvoDSG::System::ILog>>
    TryMakeQueryFeatureClass(std::string name, ZorvoDSG::eFeatureType type, const std::vector<std::string>& names,
                             const ZorvoDSG::SpatialFilter& filter) override;

    // Releases every file record and entry; refused (a log with message 20) under several connections.
    std::shared_ptr<ZorvoDSG::System::ILog> SetEmpty();

    // Adds a file entry and opens the file (once, however often it is added). `hint` is the feature
    // type assumed for files that declare none; `ncml` (or null) amends every file opened. A file that
    // cannot be opened throws (its entry stays); a group without a usable feature class is dropped,
    // or throws when the workspace is left without any record. A workspace directory refuses a path
    // that is not UTF-8 (filesystem_error, illegal_byte_sequence): conf.json could not record it.
    void AddFile(std::filesystem::path file, ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml,
                 bool unused = false);
    // Adds a directory entry and opens every file in it ending exactly in ".nc" or ".nc4" (with
    // `includeSubdirs`, in its subdirectories too). A file that cannot be opened, or whose every
    // group is refused, and a subdirectory that cannot be read are logged (message 3) and the scan
    // goes on; a directory that cannot be read itself throws std::filesystem::filesystem_error.
    void AddDirectory(const std::filesystem::path& directory, ZorvoDSG::eFeatureType hint,
                      ZorvoDSG::Host::IXMLDOMDocument* ncml, bool unused, bool includeSubdirs);
    // Removes the records of the file (or of every file inside the directory) that the running
    // reconciliation has not met, logging message 2 for each, and the entries of that path (inside
    // that directory). Paths are compared lexically normalised, component by component.
    void RemoveFile(std::filesystem::path file);
    void RemoveDirectory(std::filesystem::path directory);
    // Replaces the entries by `paths` (files by their extension, directories otherwise): files already
    // open are kept, new ones opened, records no path reaches any more removed (message 2). Refused
    // under several connections (a log with message 20). A path that cannot be opened throws as
    // AddFile or AddDirectory would, and the entries and records are then left as they were.
    std::shared_ptr<ZorvoDSG::System::ILog> ReconcileEntries(const std::vector<std::filesystem::path>& paths,
                                                             ZorvoDSG::eFeatureType hint,
                                                             ZorvoDSG::Host::IXMLDOMDocument* ncml, bool includeSubdirs);

    // Opens the files of the entries read back by s_Open, each entry as it was added; files already
    // open are kept. A file that cannot be opened is logged (message 3), not thrown.
    void ReopenEntries(ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml);
    // How files are read from now on (NetCDFFile::s_Open's options).
    void SetOpenOptions(const OpenOptions& options);

    const std::string& Version() const { return m_version; }
    const std::filesystem::path& Path() const { return m_path; }
    std::vector<Entry> Entries() const;
    // The records, newest first.
    std::vector<FileRecord> FileRecords() const;
    uint32_t cConnections() const { return m_cConnections.load(); }

private:
    NetCDFWorkspace();
    NetCDFWorkspace(std::filesystem::path path, std::string version);
    explicit NetCDFWorkspace(std::filesystem::path path);

    friend struct NetCDFWorkspaceAccess;  // tests

    void ToJSON(ZorvoDSG::ZorvoJSONWriter& writer) const;
    void FromJSON(const std::string& text);
    std::shared_ptr<ZorvoDSG::System::ILog> SetEmptyImpl();
    void DisconnectFiles();
    // The text of conf.json, or nothing when the directory has none.
    std::optional<std::string> ReadConfIfAny() const;

    // The entry operations without the mutex, for callers that hold it.
    void AddFileLocked(std::filesystem::path file, ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml);
    void AddDirectoryLocked(const std::filesystem::path& directory, ZorvoDSG::eFeatureType hint,
                            ZorvoDSG::Host::IXMLDOMDocument* ncml, bool includeSubdirs);
    void ScanDirectory(const Entry& entry, ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml);
    void TryAddFileInternal(const Entry& entry, ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml);
    // TryAddFileInternal for one file met by a scan: every failure is logged.
    void TryAddScannedFile(const Entry& entry, ZorvoDSG::eFeatureType hint, ZorvoDSG::Host::IXMLDOMDocument* ncml);
    bool bMarkOpened(const std::filesystem::path& path);
    template <class Matches>
    void RemoveMatching(Matches&& matches);
    long NextEntryId() { return m_nextEntryId++; }

    std::string m_version;
    NetCDFWorkspaceLog m_log;
    std::vector<Entry> m_entries;
    std::list<FileRecord> m_files;  // newest first
    std::filesystem::path m_path;   // empty for the in-memory workspace
    std::atomic<uint32_t> m_cConnections{0};
    mutable std::mutex m_mutex;
    bool m_bReconciling = false;
    long m_nextEntryId = 0;
    OpenOptions m_openOptions;
    std::optional<std::string> m_confOnDisk;  // conf.json as this object last read or wrote it
};

}  // namespace ZorvoNetCDFDSG
