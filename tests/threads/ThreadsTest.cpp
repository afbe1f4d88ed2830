// The library inside a host with threads of its own: several threads open and inspect different files,
// compute WKT and parse units at once, and the group datasets of one file, which share its netCDF
// handle, are used from different threads. Every thread must see what a single thread sees. CI runs
// this program under ThreadSanitizer.

#include <gtest/gtest.h>

#include <atomic>
#include <exception>
#include <filesystem>
#include <latch>
#include <map>
#include <memory>
#include <mutex>
#include <utility>
#include <sstream>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include <unistd.h>

#include <cstdio>

#include <zorvodsg/netcdf/NetCDFFile.h>
#include <zorvodsg/spacetime/SpaceTimeReference.h>
#include <zorvodsg/spacetime/TimeUnits.h>
#include <zorvodsg/spacetime/UnitSystem.h>
#include <zorvodsg/values/Exception.h>
#include <zorvodsg/values/NetCDFWorkspaceLog.h>

namespace {

using ZorvoDSG::System::NcVariant;
using ZorvoNetCDFDSG::NetCDFFile;

constexpr int kThreads = 4;
constexpr int kRounds = 6;

const std::vector<std::filesystem::path>& Files() {
    static const std::vector<std::filesystem::path> files{
        std::filesystem::path(ZDSG_TEST_DATA_DIR) / "ncfile_x.nc",
        std::filesystem::path(ZDSG_TEST_DATA_DIR) / "ncfile_groups.nc",
        std::filesystem::path(ZDSG_TEST_DATA_DIR) / "ncmeta_classify_nc4.nc",
        std::filesystem::path(ZDSG_EXAMPLES_DIR) / "timeseries_projected.nc",
        std::filesystem::path(ZDSG_EXAMPLES_DIR) / "profile_orthogonal_nc4.nc",
        std::filesystem::path(ZDSG_EXAMPLES_DIR) / "two_groups.nc",
    };
    return files;
}

// What the process writes to stderr while it lives (a library must not write there; HDF5 beneath
// netCDF-C does on threads where nobody silenced it).
class StderrCapture {
public:
    StderrCapture() : m_file(std::tmpfile()), m_saved(::dup(2)) {
        std::fflush(stderr);
        ::dup2(::fileno(m_file), 2);
    }
    ~StderrCapture() {
        Restore();
        std::fclose(m_file);
    }
    StderrCapture(const StderrCapture&) = delete;
    StderrCapture& operator=(const StderrCapture&) = delete;

    std::string Text() {
        Restore();
        std::string text;
        std::rewind(m_file);
        for (int c = std::fgetc(m_file); c != EOF; c = std::fgetc(m_file)) {
            text += static_cast<char>(c);
        }
        return text;
    }

private:
    void Restore() {
        if (m_saved != -1) {
            std::fflush(stderr);
            ::dup2(m_saved, 2);
            ::close(m_saved);
            m_saved = -1;
        }
    }

    std::FILE* m_file;
    int m_saved;
};

std::string Describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const ZorvoDSG::Exception& e) {
        return "Exception " + std::to_string(e.NcErr());
    } catch (const std::exception& e) {
        return e.what();
    } catch (...) {
        return "unknown";
    }
}

// Everything a reader of the file learns through the library, as text: names, layouts, fill values,
// dimension lengths, coordinate roles, unit classes, and the WKT of each grid mapping.
std::string Inspect(const std::filesystem::path& path) {
    std::ostringstream out;
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    try {
        for (const auto& file : NetCDFFile::s_Open(path, 1, nullptr, log)) {
            out << file->Name() << " feature " << file->FeatureType() << '\n';
            for (const auto& [name, dimId] : std::map(file->Name2Dim().begin(), file->Name2Dim().end())) {
                out << "  dim " << name << ' ' << file->DimLen(dimId) << '\n';
            }
            for (const auto& [id, variable] : file->Variables()) {
                out << "  var " << variable.Name() << " fill " << variable.FillValue().index();
                try {
                    out << " string " << variable.IsString() << variable.IsStringScalar() << ' '
                        << variable.cStringChars();
                } catch (...) {
                    out << " string " << Describe(std::current_exception());  // no data in the file
                }
                const std::string units = variable.TryUnitsString();
                const ZorvoDSG::SpaceTime::Unit unit = ZorvoDSG::SpaceTime::ParseUnit(units);
                out << " units " << static_cast<bool>(unit);
                if (unit) {
                    out << ZorvoDSG::SpaceTime::IsLengthUnit(unit) << ZorvoDSG::SpaceTime::IsPressureUnit(unit)
                        << ZorvoDSG::SpaceTime::IsTimeUnit(unit);
                }
                if (units.find(" since ") != std::string::npos) {
                    try {
                        const auto reference = ZorvoDSG::SpaceTime::ParseTimeUnits(units);
                        out << " base " << ZorvoDSG::Host::FileTimeToUInt64(reference.ToFileTime(0.5));
                    } catch (...) {
                        out << " base error " << Describe(std::current_exception());
                    }
                }
                if (const NcVariant* gridMapping = variable.Attributes().get("grid_mapping")) {
                    const auto name = std::get_if<std::string>(gridMapping);
                    const auto found = name != nullptr ? file->Name2Var().find(*name) : file->Name2Var().end();
                    ZorvoDSG::System::AttributeMap properties;
                    if (found != file->Name2Var().end()) {
                        properties = file->Variables().at(found->second).Attributes();
                    }
                    try {
                        const ZorvoDSG::SpaceTime::SpaceTimeReference reference(*gridMapping, properties, "m", true,
                                                                                 {}, {}, log);
                        out << " wkt " << reference.WKT() << " vwkt " << reference.VWKT();
                    } catch (...) {
                        out << " wkt error " << Describe(std::current_exception());
                    }
                }
                out << '\n';
            }
            for (const auto& [name, coordinate] :
                 std::map(file->Name2CoordVar().begin(), file->Name2CoordVar().end())) {
                out << "  coord " << name << ' ' << coordinate.role << '\n';
            }
        }
    } catch (...) {
        out << "refused " << Describe(std::current_exception());
    }
    out << "messages " << log.cMessages() << '\n';
    return out.str();
}

TEST(Threads, OpenInspectWktAndUnitsAtOnce) {
    ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    std::vector<std::string> expected;
    for (const auto& path : Files()) {
        expected.push_back(Inspect(path));
        ASSERT_EQ(expected.back().find("refused"), std::string::npos) << expected.back();
    }

    std::atomic<int> mismatches{0};
    std::mutex firstMismatchMutex;
    std::pair<std::string, std::string> firstMismatch;  // (expected, seen)
    std::latch start(kThreads);
    StderrCapture stderrText;
    {
        std::vector<std::jthread> threads;
        for (int t = 0; t < kThreads; ++t) {
            threads.emplace_back([&, t] {
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) {
                    const size_t index = static_cast<size_t>(t + round) % Files().size();
                    if (std::string seen = Inspect(Files()[index]); seen != expected[index]) {
                        if (++mismatches == 1) {
                            const std::lock_guard lock(firstMismatchMutex);
                            firstMismatch = {expected[index], std::move(seen)};
                        }
                    }
                }
            });
        }
    }
    EXPECT_EQ(mismatches.load(), 0);
    EXPECT_EQ(firstMismatch.second, firstMismatch.first);
    const std::string written = stderrText.Text();
    EXPECT_TRUE(written.empty()) << written.substr(0, 400);
}

TEST(Threads, GroupDatasetsSharingOneHandle) {
    ZorvoDSG::s_InitUDUnits2(ZDSG_UDUNITS2_XML);
    ZorvoNetCDFDSG::NetCDFWorkspaceLog log;
    auto datasets = NetCDFFile::s_Open(std::filesystem::path(ZDSG_TEST_DATA_DIR) / "ncfile_groups.nc", 1, nullptr, log);
    ASSERT_GE(datasets.size(), 2u);

    std::atomic<int> failures{0};
    std::latch start(static_cast<std::ptrdiff_t>(datasets.size()));
    {
        std::vector<std::jthread> threads;
        for (auto& dataset : datasets) {
            threads.emplace_back([&, file = std::move(dataset)] {
                start.arrive_and_wait();
                for (int round = 0; round < kRounds; ++round) {
                    try {
                        for (const auto& [name, dimId] : file->Name2Dim()) {
                            if (file->DimLen(dimId) == 0 && name.empty()) {
                                ++failures;
                            }
                        }
                        file->Disconnect();  // the others keep the handle open
                        file->Connect();     // shares it again, or reopens it when all let go
                        if (file->NcID() < 0) {
                            ++failures;
                        }
                    } catch (...) {
                        ++failures;
                    }
                }
            });
        }
    }
    EXPECT_EQ(failures.load(), 0);
}

}  // namespace
