#pragma once

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>

/// A folder of a test's own, empty at first.
///
/// Ownership: owns the folder and all that is put into it; both go with the object.
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

    /// Path of \p i_Name (UTF-8) in this folder, in UTF-8.
    std::string file(std::string_view i_Name) const
    {
        const std::u8string name(i_Name.begin(), i_Name.end());
        const std::u8string path = (m_Path / name).u8string();
        return std::string(path.begin(), path.end());
    }

    /// Writes a file with exactly these bytes; result: its path in UTF-8.
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
