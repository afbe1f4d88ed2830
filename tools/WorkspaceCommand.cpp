#include "WorkspaceCommand.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <set>

#include "Names.h"
#include "Progress.h"
#include "RunSetup.h"
#include "WorkspaceLock.h"
#include "WorkspaceReport.h"
#include <zorvodsg/host/Utf8.h>
#include <zorvodsg/values/LogCodes.h>
#include <zorvodsg/workspace/NetCDFWorkspace.h>

namespace fs = std::filesystem;
using ZorvoNetCDFDSG::NetCDFWorkspace;

namespace zdsg {

namespace {

void Report(const std::string& text) { std::cerr << "zdsg: " << Printable(text) << '\n'; }

std::string Narrow(const std::wstring& text) { return ZorvoDSG::Host::WideToUtf8(text); }

size_t cRefusals(const ZorvoDSG::System::ILog& log) {
    return log.FindMessageRange(ZorvoDSG::System::eLogFileRefused, ZorvoDSG::System::eLogFileRefused).size();
}

// Entries are kept as absolute paths: the next run may start in another directory.
fs::path AbsolutePath(const std::string& path) {
    std::error_code ec;
    const fs::path absolute = fs::absolute(path, ec);
    return ec ? fs::path(path) : absolute;
}

// The messages of the workspace's log that tell the user about a file it could not use.
bool ReportRefusals(const ZorvoDSG::System::ILog& log) {
    const auto refused = log.FindMessageRange(ZorvoDSG::System::eLogFileRefused, ZorvoDSG::System::eLogFileRefused);
    for (const auto& message : refused) {
        Report(Narrow(message.Text()));
    }
    return !refused.empty();
}

// What every action but create starts with: the workspace and the files of its entries, open; for an
// action that changes it, locked until the run ends.
struct OpenedWorkspace {
    std::optional<WorkspaceLock> lock;
    std::shared_ptr<NetCDFWorkspace> workspace;
    RunResources resources;
};

enum class Access { eRead, eChange };

std::optional<OpenedWorkspace> OpenWorkspace(const WorkspaceOptions& options, Access access) {
    OpenedWorkspace opened;
    if (!LoadRunResources(options.udunits, options.ncml, opened.resources)) {
        return std::nullopt;
    }
    // A mistyped directory must not become a workspace by accident: only `create` makes one.
    std::error_code ec;
    if (fs::is_directory(options.directory, ec) && !fs::exists(fs::path(options.directory) / "conf.json", ec)) {
        Report(options.directory + ": not a workspace (no conf.json); make one with 'zdsg workspace create'");
        return std::nullopt;
    }
    if (access == Access::eChange && fs::is_directory(options.directory, ec)) {
        std::string error;
        opened.lock = WorkspaceLock::s_Acquire(options.directory, error);
        if (!opened.lock) {
            Report(error);
            return std::nullopt;
        }
    }
    try {
        opened.workspace = NetCDFWorkspace::s_Open(options.directory);
        opened.workspace->SetOpenOptions(MakeOpenOptions(options.open));
        opened.workspace->ReopenEntries(ZorvoDSG::eFeatureUnknown, opened.resources.ncml.get());
    } catch (...) {
        Report(CurrentExceptionText());
        return std::nullopt;
    }
    return opened;
}

bool Commit(NetCDFWorkspace& workspace) {
    try {
        workspace.Commit(nullptr);
        return true;
    } catch (...) {
        Report(CurrentExceptionText());
        return false;
    }
}

int RunCreate(const WorkspaceOptions& options) {
    try {
        NetCDFWorkspace::s_Create(options.directory)->Commit(nullptr);
    } catch (...) {
        Report(CurrentExceptionText());
        return eExitRefused;
    }
    std::cout << "created workspace " << Printable(options.directory) << '\n';
    return eExitOk;
}

int RunAdd(const WorkspaceOptions& options) {
    auto opened = OpenWorkspace(options, Access::eChange);
    if (!opened) {
        return eExitRefused;
    }
    NetCDFWorkspace& workspace = *opened->workspace;
    bool bRefused = ReportRefusals(workspace.CurrentLog());
    workspace.Refresh(nullptr);
    const size_t cBefore = workspace.FileRecords().size();
    Progress progress(options.paths.size(), bStderrTerminal());
    for (size_t i = 0; i < options.paths.size(); ++i) {
        const fs::path path = AbsolutePath(options.paths[i]);
        progress.Show(i, path.string());
        const size_t cRefusedBefore = cRefusals(workspace.CurrentLog());
        try {
            if (fs::is_directory(path)) {
                workspace.AddDirectory(path, ZorvoDSG::eFeatureUnknown, opened->resources.ncml.get(), false,
                                       options.recursive);
            } else if (fs::exists(path)) {
                workspace.AddFile(path, ZorvoDSG::eFeatureUnknown, opened->resources.ncml.get());
            } else {
                progress.Clear();
                Report(path.string() + ": no such file or directory");
                bRefused = true;
            }
        } catch (...) {
            progress.Clear();
            if (cRefusals(workspace.CurrentLog()) == cRefusedBefore) {  // else the log tells it below
                Report(CurrentExceptionText());
            }
            bRefused = true;
        }
    }
    progress.Clear();
    bRefused = ReportRefusals(workspace.CurrentLog()) || bRefused;
    if (!Commit(workspace)) {
        return eExitRefused;
    }
    const auto records = workspace.FileRecords();
    std::cout << "datasets added: " << records.size() - std::min(records.size(), cBefore)
              << "; in the workspace: " << records.size() << " datasets, "
              << workspace.BasicFeatureClasses(ZorvoDSG::eFeatureUnknown).size() << " feature classes\n";
    return bRefused ? eExitRefused : eExitOk;
}

int RunList(const WorkspaceOptions& options) {
    auto opened = OpenWorkspace(options, Access::eRead);
    if (!opened) {
        return eExitRefused;
    }
    const bool bRefused = ReportRefusals(opened->workspace->CurrentLog());
    if (options.json) {
        WriteWorkspaceJson(*opened->workspace, std::cout);
    } else {
        WriteWorkspaceText(*opened->workspace, std::cout);
    }
    return bRefused ? eExitRefused : eExitOk;
}

// `path` itself or below `directory`, component by component (both absolute and normalised).
bool bWithin(const fs::path& path, const fs::path& directory) {
    const fs::path relative = path.lexically_relative(directory);
    return !relative.empty() && *relative.begin() != "..";
}

fs::path NormalAbsolutePath(const std::string& path) {
    fs::path normal = AbsolutePath(path).lexically_normal();
    if (!normal.has_filename() && normal.has_relative_path()) {
        normal = normal.parent_path();  // "dir/" is "dir"
    }
    return normal;
}

// Why `path` cannot be removed, or empty when it can: a path that no entry lies within is either not
// in the workspace or found through a directory entry, which the next run would scan again.
std::string WhyNotRemovable(const NetCDFWorkspace& workspace, const fs::path& path) {
    const auto entries = workspace.Entries();
    if (std::any_of(entries.begin(), entries.end(), [&](const auto& entry) { return bWithin(entry.path, path); })) {
        return {};
    }
    for (const auto& entry : entries) {
        if (bWithin(path, entry.path)) {
            return "found through the directory entry " + entry.path.string() +
                   ", which the next run scans again; remove that entry, or move the file out of it";
        }
    }
    return "not in the workspace";
}

int RunRemove(const WorkspaceOptions& options) {
    auto opened = OpenWorkspace(options, Access::eChange);
    if (!opened) {
        return eExitRefused;
    }
    NetCDFWorkspace& workspace = *opened->workspace;
    workspace.Refresh(nullptr);
    bool bRefused = false;
    for (const std::string& argument : options.paths) {
        const fs::path path = NormalAbsolutePath(argument);
        if (const std::string why = WhyNotRemovable(workspace, path); !why.empty()) {
            Report(argument + ": " + why);
            bRefused = true;
            continue;
        }
        const auto entriesBefore = workspace.Entries();
        workspace.RemoveDirectory(path);  // a file, or a directory with every entry below it
        const auto entriesAfter = workspace.Entries();
        for (const auto& entry : entriesBefore) {
            const bool bKept = std::any_of(entriesAfter.begin(), entriesAfter.end(),
                                           [&](const auto& kept) { return kept.path == entry.path; });
            if (!bKept) {
                std::cout << "removed entry " << Printable(entry.path.string()) << '\n';
            }
        }
    }
    for (const auto& message : workspace.CurrentLog().FindMessageRange(ZorvoDSG::System::eLogFileRecordRemoved,
                                                                       ZorvoDSG::System::eLogFileRecordRemoved)) {
        std::cout << "removed dataset " << Printable(Narrow(message.Text())) << '\n';
    }
    if (!Commit(workspace)) {
        return eExitRefused;
    }
    return bRefused ? eExitRefused : eExitOk;
}

// The files conf.json recorded against the files found now, from the entries, on the disk.
int RunReconcile(const WorkspaceOptions& options) {
    auto opened = OpenWorkspace(options, Access::eChange);
    if (!opened) {
        return eExitRefused;
    }
    const std::set<std::string> recorded = RecordedFiles(fs::path(options.directory) / "conf.json");
    NetCDFWorkspace& workspace = *opened->workspace;
    const bool bRefused = ReportRefusals(workspace.CurrentLog());
    std::set<std::string> found;
    for (const auto& record : workspace.FileRecords()) {
        found.insert(record.file->NcPath().string());
    }
    for (const auto& file : recorded) {
        if (found.count(file) == 0) {
            std::cout << "removed " << Printable(file) << '\n';
        }
    }
    for (const auto& file : found) {
        if (recorded.count(file) == 0) {
            std::cout << "added " << Printable(file) << '\n';
        }
    }
    if (!Commit(workspace)) {
        return eExitRefused;
    }
    return bRefused ? eExitRefused : eExitOk;
}

int RunQuery(const WorkspaceOptions& options) {
    if (options.type.empty() == options.name.empty()) {
        Report("workspace query: give exactly one of --type and --name");
        return eExitUsage;
    }
    auto opened = OpenWorkspace(options, Access::eRead);
    if (!opened) {
        return eExitRefused;
    }
    NetCDFWorkspace& workspace = *opened->workspace;
    ReportRefusals(workspace.CurrentLog());
    std::vector<std::shared_ptr<ZorvoDSG::BasicFeatureClass>> classes;
    if (!options.type.empty()) {
        const ZorvoDSG::eFeatureType type = ZorvoDSG::ParseFeatureType(options.type);
        if (type == ZorvoDSG::eFeatureUnknown && options.type != "all") {
            Report("workspace query: unknown feature type '" + options.type + "'");
            return eExitUsage;
        }
        classes = workspace.BasicFeatureClasses(type);
    } else {
        classes = workspace.BasicFeatureClasses({{options.name, {}}});
    }
    if (classes.empty()) {
        Report("no feature class matches");
        return eExitRefused;
    }
    const QueryResult result = MakeQueryResult(workspace, classes);
    if (options.json) {
        WriteQueryJson(result, std::cout);
    } else {
        WriteQueryText(result, std::cout);
    }
    return eExitOk;
}

void AddCommonOptions(CLI::App& command, WorkspaceOptions& options) {
    command.add_option("--ncml", options.ncml, "NcML document applied to every file opened")->check(CLI::ExistingFile);
    AddOpenFlags(command, options.open);
    command.add_option("--udunits", options.udunits, "UDUNITS-2 XML database (default: found automatically)")
        ->check(CLI::ExistingFile);
}

CLI::App* AddAction(CLI::App& workspace, WorkspaceOptions& options, const std::string& name,
                    const std::string& description) {
    CLI::App* action = workspace.add_subcommand(name, description);
    action->add_option("directory", options.directory, "The workspace directory")->required();
    action->callback([&options, name] { options.action = name; });
    return action;
}

}  // namespace

CLI::App* AddWorkspaceCommand(CLI::App& app, WorkspaceOptions& options) {
    CLI::App* workspace = app.add_subcommand("workspace", "Catalogue DSG files in a workspace directory");
    workspace->require_subcommand(1);

    AddAction(*workspace, options, "create", "Create an empty workspace directory");

    CLI::App* add = AddAction(*workspace, options, "add", "Add netCDF files, or directories of .nc and .nc4 files");
    add->add_option("paths", options.paths, "Files or directories")->required();
    add->add_flag("-r,--recursive", options.recursive, "Take the subdirectories of directories too");
    AddCommonOptions(*add, options);

    CLI::App* list = AddAction(*workspace, options, "list", "List the entries, files and feature classes");
    list->add_flag("--json", options.json, "Write JSON");
    AddCommonOptions(*list, options);

    CLI::App* remove = AddAction(*workspace, options, "remove", "Remove files or directories from the workspace");
    remove->add_option("paths", options.paths, "Files or directories as they were added")->required();
    AddCommonOptions(*remove, options);

    CLI::App* reconcile =
        AddAction(*workspace, options, "reconcile", "Find the entries' files again and say what changed");
    AddCommonOptions(*reconcile, options);

    CLI::App* query = AddAction(*workspace, options, "query",
                                "Feature classes of one type or name, with their instance and observation variables");
    query->add_option("--type", options.type, "point, profile, timeSeries, trajectory, ... or all");
    query->add_option("--name", options.name, "A feature class name (letter case ignored)");
    query->add_flag("--json", options.json, "Write JSON");
    AddCommonOptions(*query, options);
    return workspace;
}

int RunWorkspace(const WorkspaceOptions& options) {
    if (options.action == "create") {
        return RunCreate(options);
    }
    if (options.action == "add") {
        return RunAdd(options);
    }
    if (options.action == "list") {
        return RunList(options);
    }
    if (options.action == "remove") {
        return RunRemove(options);
    }
    if (options.action == "reconcile") {
        return RunReconcile(options);
    }
    return RunQuery(options);
}

}  // namespace zdsg
