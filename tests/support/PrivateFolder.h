// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/Standard.h"

#include <filesystem>
#include <fstream>

namespace orvane
{

/// A new folder for a test. The destructor removes it with its content.
struct PrivateFolder
{
    /// Makes the folder in where.
    explicit PrivateFolder(const std::filesystem::path& where = "/tmp")
    {
        std::string name = (where / "kestrune.testXXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("no folder for the test in " + where.string());
        mPath = name;
    }
    PrivateFolder(PrivateFolder&&) = delete;
    ~PrivateFolder() { std::filesystem::remove_all(mPath); }

    [[nodiscard]] std::string Path(const std::string& name = "") const
    {
        return name.empty() ? mPath.string() : (mPath / name).string();
    }
    /// The number of files and folders in it.
    auto Count() const { return std::distance(std::filesystem::directory_iterator(mPath), {}); }

    /// Puts a shell script there under the name of a program.
    void Install(const std::string& name, const std::string& script) const
    {
        std::ofstream(mPath / name) << "#!/bin/sh\n" << script << "\n";
        std::filesystem::permissions(mPath / name, std::filesystem::perms::owner_all);
    }

private:
    std::filesystem::path mPath;
};

inline void writeTextFile(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

/// The content of a file; "(no file)" for a missing one.
inline std::string readTextFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return "(no file)";
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Sets an environment variable, or unsets it for null, for the life of the object.
struct EnvironmentVariable
{
    EnvironmentVariable(const char* name, const char* value)
        : mName(name)
    {
        if (const char* before = std::getenv(name)) {
            mWasSet = true;
            mBefore = before;
        }
        Set(value);
    }
    EnvironmentVariable(EnvironmentVariable&&) = delete;
    ~EnvironmentVariable() { Set(mWasSet ? mBefore.c_str() : nullptr); }

private:
    void Set(const char* value) const
    {
        if (value)
            setenv(mName.c_str(), value, 1);
        else
            unsetenv(mName.c_str());
    }

    std::string mName;
    std::string mBefore;
    bool mWasSet = false;
};

}  // namespace orvane
