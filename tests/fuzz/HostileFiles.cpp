#include "HostileFiles.h"

#include <gtest/gtest.h>
#include <netcdf.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace zdsg_test {

namespace {

void Ok(int status) { ASSERT_EQ(status, NC_NOERR) << nc_strerror(status); }

// An open file being defined; closed (and written) when it goes.
class Writer {
public:
    Writer(const std::filesystem::path& path, int mode) { Ok(nc_create(path.c_str(), mode | NC_CLOBBER, &m_id)); }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { nc_close(m_id); }

    int Id() const { return m_id; }
    int Dim(const char* name, size_t length, int group = -1) {
        int id = -1;
        Ok(nc_def_dim(group < 0 ? m_id : group, name, length, &id));
        return id;
    }
    int Var(const char* name, nc_type type, std::vector<int> dims, int group = -1) {
        int id = -1;
        Ok(nc_def_var(group < 0 ? m_id : group, name, type, static_cast<int>(dims.size()), dims.data(), &id));
        return id;
    }
    void Text(int var, const char* name, const std::string& value, int group = -1) {
        Ok(nc_put_att_text(group < 0 ? m_id : group, var, name, value.size(), value.c_str()));
    }
    void Int(int var, const char* name, int value, int group = -1) {
        Ok(nc_put_att_int(group < 0 ? m_id : group, var, name, NC_INT, 1, &value));
    }
    void Chunked(int var, size_t chunk, int rank, int group = -1) {
        std::vector<size_t> chunks(static_cast<size_t>(rank), 1);
        chunks.back() = chunk;
        Ok(nc_def_var_chunking(group < 0 ? m_id : group, var, NC_CHUNKED, chunks.data()));
    }
    void EndDef() { Ok(nc_enddef(m_id)); }

private:
    int m_id = -1;
};

void LatLon(Writer& w, int dim, int group = -1) {
    const int lat = w.Var("lat", NC_DOUBLE, {dim}, group);
    w.Text(lat, "standard_name", "latitude", group);
    w.Text(lat, "units", "degrees_north", group);
    const int lon = w.Var("lon", NC_DOUBLE, {dim}, group);
    w.Text(lon, "standard_name", "longitude", group);
    w.Text(lon, "units", "degrees_east", group);
}

// lat, lon, time along `dim`, with units and standard names as text.
void Coordinates(Writer& w, int dim, int group = -1) {
    LatLon(w, dim, group);
    const int time = w.Var("time", NC_DOUBLE, {dim}, group);
    w.Text(time, "standard_name", "time", group);
    w.Text(time, "units", "seconds since 2000-01-01", group);
}

void RaggedProfiles(const std::filesystem::path& path, nc_type countType, const std::vector<double>& counts,
                    size_t cSamples) {
    Writer w(path, NC_NETCDF4);
    w.Text(NC_GLOBAL, "featureType", "profile");
    w.Text(NC_GLOBAL, "Conventions", "CF-1.8");
    const int profile = w.Dim("profile", counts.size());
    const int obs = w.Dim("obs", cSamples);
    Coordinates(w, profile);
    const int id = w.Var("profile_id", NC_INT, {profile});
    w.Text(id, "cf_role", "profile_id");
    const int rowSize = w.Var("row_size", countType, {profile});
    w.Text(rowSize, "sample_dimension", "obs");
    const size_t chunk = std::min<size_t>(cSamples, 1024);
    const int z = w.Var("z", NC_DOUBLE, {obs});
    w.Chunked(z, chunk, 1);
    w.Text(z, "standard_name", "depth");
    w.Text(z, "units", "m");
    w.Text(z, "positive", "down");
    w.Text(z, "axis", "Z");
    const int temp = w.Var("temp", NC_FLOAT, {obs});
    w.Chunked(temp, chunk, 1);
    w.Text(temp, "coordinates", "time lat lon z");
    w.EndDef();
    Ok(nc_put_var_double(w.Id(), rowSize, counts.data()));
}

void HugeInstanceCount(const std::filesystem::path& path) {
    Writer w(path, NC_NETCDF4);
    w.Text(NC_GLOBAL, "featureType", "timeSeries");
    const int station = w.Dim("station", size_t{1} << 33);
    const int obs = w.Dim("obs", 10);
    LatLon(w, station);
    int varId = -1;
    Ok(nc_inq_varid(w.Id(), "lat", &varId));
    w.Chunked(varId, 4096, 1);
    Ok(nc_inq_varid(w.Id(), "lon", &varId));
    w.Chunked(varId, 4096, 1);
    const int id = w.Var("station_id", NC_INT, {station});
    w.Chunked(id, 4096, 1);
    w.Text(id, "cf_role", "timeseries_id");
    const int rowSize = w.Var("row_size", NC_INT, {station});
    w.Chunked(rowSize, 4096, 1);
    w.Text(rowSize, "sample_dimension", "obs");
    const int time = w.Var("time", NC_DOUBLE, {obs});
    w.Text(time, "standard_name", "time");
    w.Text(time, "units", "seconds since 2000-01-01");
    const int temp = w.Var("temp", NC_FLOAT, {obs});
    w.Text(temp, "coordinates", "time lat lon");
}

void WideStrings(const std::filesystem::path& path) {
    Writer w(path, NC_NETCDF4);
    w.Text(NC_GLOBAL, "featureType", "point");
    const int obs = w.Dim("obs", 3);
    const int strlen = w.Dim("name_strlen", 5'000'000);
    Coordinates(w, obs);
    const int name = w.Var("name", NC_CHAR, {obs, strlen});
    w.Chunked(name, 65536, 2);
    w.Text(name, "coordinates", "time lat lon");
}

void OrthogonalHugeProfiles(const std::filesystem::path& path) {
    Writer w(path, NC_NETCDF4);
    w.Text(NC_GLOBAL, "featureType", "profile");
    const int profile = w.Dim("profile", 2);
    const int level = w.Dim("z", size_t{1} << 35);
    Coordinates(w, profile);
    const int id = w.Var("profile_id", NC_INT, {profile});
    w.Text(id, "cf_role", "profile_id");
    const int z = w.Var("z", NC_DOUBLE, {level});
    w.Chunked(z, 4096, 1);
    w.Text(z, "standard_name", "depth");
    w.Text(z, "units", "m");
    w.Text(z, "axis", "Z");
    w.Text(z, "positive", "down");
    const int temp = w.Var("temp", NC_FLOAT, {profile, level});
    w.Chunked(temp, 4096, 2);
    w.Text(temp, "coordinates", "time lat lon z");
}

// A point file whose references lead nowhere, or in circles and to themselves.
void BadReferences(const std::filesystem::path& path, bool bDangling) {
    Writer w(path, NC_CLASSIC_MODEL | NC_NETCDF4);
    w.Text(NC_GLOBAL, "featureType", "point");
    const int obs = w.Dim("obs", 2);
    Coordinates(w, obs);
    const int crs = w.Var("crs", NC_INT, {});
    w.Text(crs, "grid_mapping_name", "latitude_longitude");
    w.Text(crs, "grid_mapping", "crs");
    const int a = w.Var("a", NC_FLOAT, {obs});
    w.Text(a, "coordinates", bDangling ? "time lat lon nowhere" : "time lat lon lat time");
    w.Text(a, "ancillary_variables", bDangling ? "b nowhere" : "b a");
    w.Text(a, "grid_mapping", bDangling ? "missing_crs" : "crs");
    const int b = w.Var("b", NC_FLOAT, {obs});
    w.Text(b, "coordinates", "time lat lon");
    w.Text(b, "ancillary_variables", "a b");
    w.Text(b, "grid_mapping", "crs");
}

// Point groups nested `depth` levels deep.
void NestedGroups(const std::filesystem::path& path, int depth) {
    Writer w(path, NC_NETCDF4);
    int group = w.Id();
    for (int level = 0; level < depth; ++level) {
        int child = -1;
        std::string name = "g";  // not "g" + ...: gcc 12 warns (-Wrestrict) about that temporary
        name += std::to_string(level);
        Ok(nc_def_grp(group, name.c_str(), &child));
        group = child;
    }
    w.Text(NC_GLOBAL, "featureType", "point", group);
    const int obs = w.Dim("obs", 2, group);
    Coordinates(w, obs, group);
    const int a = w.Var("a", NC_FLOAT, {obs}, group);
    w.Text(a, "coordinates", "time lat lon", group);
}

// Every attribute that must be text, given as a number instead.
void WrongTypes(const std::filesystem::path& path, const char* which) {
    Writer w(path, NC_CLASSIC_MODEL | NC_NETCDF4);
    const auto text = [&](int var, const char* name, const std::string& value) {
        if (std::strcmp(name, which) == 0) {
            w.Int(var, name, 7);
        } else {
            w.Text(var, name, value);
        }
    };
    text(NC_GLOBAL, "featureType", "timeSeries");
    text(NC_GLOBAL, "Conventions", "CF-1.8");
    const int station = w.Dim("station", 2);
    const int obs = w.Dim("obs", 4);
    const int lat = w.Var("lat", NC_DOUBLE, {station});
    text(lat, "standard_name", "latitude");
    text(lat, "units", "degrees_north");
    const int lon = w.Var("lon", NC_DOUBLE, {station});
    text(lon, "standard_name", "longitude");
    text(lon, "units", "degrees_east");
    text(lon, "axis", "X");
    const int id = w.Var("station_id", NC_INT, {station});
    text(id, "cf_role", "timeseries_id");
    const int rowSize = w.Var("row_size", NC_INT, {station});
    text(rowSize, "sample_dimension", "obs");
    const int time = w.Var("time", NC_DOUBLE, {obs});
    text(time, "standard_name", "time");
    text(time, "units", "seconds since 2000-01-01");
    const int z = w.Var("z", NC_DOUBLE, {obs});
    text(z, "units", "m");
    text(z, "positive", "up");
    text(z, "axis", "Z");
    const int crs = w.Var("crs", NC_INT, {});
    text(crs, "grid_mapping_name", "latitude_longitude");
    const int temp = w.Var("temp", NC_FLOAT, {obs});
    text(temp, "coordinates", "time lat lon z");
    text(temp, "grid_mapping", "crs");
    text(temp, "ancillary_variables", "qc");
    const int qc = w.Var("qc", NC_BYTE, {obs});
    text(qc, "coordinates", "time lat lon z");
    text(qc, "grid_mapping", "crs");
    w.EndDef();
    const int rows[] = {2, 2};
    Ok(nc_put_var_int(w.Id(), rowSize, rows));
}

std::vector<HostileFile> MakeFiles() {
    std::vector<HostileFile> files{
        {"negative_row_size", [](const auto& p) { RaggedProfiles(p, NC_INT64, {3, -5}, 10); }},
        {"overflowing_row_sizes", [](const auto& p) { RaggedProfiles(p, NC_INT64, {4.6e18, 4.6e18, 4.6e18}, 10); }},
        {"fractional_row_size", [](const auto& p) { RaggedProfiles(p, NC_DOUBLE, {2.5, 1e300}, 10); }},
        {"row_size_of_a_huge_sample_dimension",
         [](const auto& p) { RaggedProfiles(p, NC_INT64, {68719476736.0}, size_t{1} << 36); }},
        {"huge_instance_dimension", HugeInstanceCount},
        {"string_width_of_millions", WideStrings},
        {"orthogonal_profiles_of_2^35_levels", OrthogonalHugeProfiles},
        {"dangling_references", [](const auto& p) { BadReferences(p, true); }},
        {"cyclic_references", [](const auto& p) { BadReferences(p, false); }},
        {"groups_nested_30_deep", [](const auto& p) { NestedGroups(p, 30); }},
        {"groups_nested_100_deep", [](const auto& p) { NestedGroups(p, 100); }},
    };
    for (const char* attribute : {"featureType", "Conventions", "standard_name", "units", "axis", "positive",
                                  "cf_role", "sample_dimension", "coordinates", "grid_mapping",
                                  "grid_mapping_name", "ancillary_variables"}) {
        files.push_back({std::string("numeric_") + attribute,
                         [attribute](const auto& p) { WrongTypes(p, attribute); }});
    }
    return files;
}

}  // namespace

const std::vector<HostileFile>& HostileFiles() {
    static const std::vector<HostileFile> files = MakeFiles();
    return files;
}

}  // namespace zdsg_test
