#pragma once
// Runs the built zdsg program and captures what it writes and how it ends.

#include <filesystem>
#include <string>
#include <vector>

#include <rapidjson/document.h>

struct ToolRun {
    int exitStatus = -1;  // -1 when it did not exit normally
    int signal = 0;       // the signal that ended it, 0 when none
    bool timedOut = false;
    std::string out;
    std::string err;
};

// Runs zdsg with `arguments`; `environment` entries ("NAME=value") are added to (or replace) the
// test's own environment, and names listed in `unset` are removed from it. With `stdoutPath`, stdout
// goes to that file (e.g. /dev/full) instead of being captured.
ToolRun RunTool(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {},
                const std::vector<std::string>& unset = {}, const std::string& stdoutPath = {});

std::filesystem::path ExamplePath(const std::string& name);

// A fresh directory under the tests' build directory, removed and re-created.
std::filesystem::path ScratchDirectory(const std::string& name);
void WriteFile(const std::filesystem::path& path, const std::string& content);

// Parses stdout of a --json run; fails the current test when it is not one valid JSON object.
bool ParseJson(const ToolRun& run, rapidjson::Document& document);

// The dataset of that name in the document, or null.
const rapidjson::Value* FindDataset(const rapidjson::Document& document, const std::string& name);
// The variable of that name in a dataset, or null.
const rapidjson::Value* FindVariable(const rapidjson::Value& dataset, const std::string& name);
