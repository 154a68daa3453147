// Scratch_Folder: a fresh folder for a test that writes files, removed with everything in it at the end of the scope.
#ifndef SCRATCH_FOLDER_H
#define SCRATCH_FOLDER_H

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

class Scratch_Folder
{
public:
    Scratch_Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "kanvo-test-XXXXXX").string();
        m_path           = ::mkdtemp(name.data()) != nullptr ? name : std::string();
    }
    Scratch_Folder(const Scratch_Folder&) = delete;
    ~Scratch_Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string Path(const std::string& name = {}) const { return name.empty() ? m_path : m_path + "/" + name; }

    //! The names of all files, sorted.
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
        {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    void Write(const std::string& name, const std::vector<std::uint8_t>& bytes) const
    {
        std::ofstream(Path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    std::vector<std::uint8_t> Read(const std::string& name) const
    {
        std::ifstream stream(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

private:
    std::string m_path;
};

#endif
