#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

/// A folder for one test, initially empty.
///
/// Ownership: owns the folder and everything in it. The destructor removes them.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        static std::atomic<unsigned> s_Count = 0;
        std::random_device random;
        do
        {
            const std::string name = "xmlplugin-test-" + std::to_string(random()) + "-" + std::to_string(++s_Count);
            m_Path = std::filesystem::temp_directory_path() / name;
        } while (!std::filesystem::create_directory(m_Path));
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return m_Path; }

    /// The path of \p i_Name (UTF-8) in this folder, in UTF-8.
    std::string file(std::string_view i_Name) const
    {
        const std::u8string name(i_Name.begin(), i_Name.end());
        const std::u8string path = (m_Path / name).u8string();
        return std::string(path.begin(), path.end());
    }

    /// Writes a file with exactly these bytes. Returns its path in UTF-8.
    std::string write(std::string_view i_Name, std::string_view i_Bytes) const
    {
        const std::u8string name(i_Name.begin(), i_Name.end());
        std::ofstream stream(m_Path / name, std::ios::binary | std::ios::trunc);
        stream.write(i_Bytes.data(), static_cast<std::streamsize>(i_Bytes.size()));
        return file(i_Name);
    }

private:
    std::filesystem::path m_Path;
};
