// Program_Files: see the header.
#include "Program_Files.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>

#include <unistd.h>

#include "Program_Text.h"

namespace kanvo_image
{
namespace
{

namespace fs = std::filesystem;

struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

[[noreturn]] void Fail(const std::string& path, const std::string& reason)
{
    throw Failure(Shown(path) + ": " + reason);
}

Bytes ReadStream(std::FILE* stream, const std::string& path)
{
    constexpr std::size_t Portion = std::size_t{1} << 16;

    Bytes bytes;
    for (;;)
    {
        const std::size_t before = bytes.size();
        bytes.resize(before + Portion);
        const std::size_t count = std::fread(bytes.data() + before, 1, Portion, stream);
        bytes.resize(before + count);
        if (bytes.size() > MaxInputBytes)
        {
            Fail(path, "larger than the limit of " + Grouped(MaxInputBytes) + " bytes");
        }
        if (count < Portion)
        {
            if (std::ferror(stream) != 0)
            {
                Fail(path, std::strerror(errno));
            }
            return bytes;
        }
    }
}

void WriteOutput(std::string_view bytes)
{
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size() || std::fflush(stdout) != 0)
    {
        Fail("standard output", std::strerror(errno));
    }
}

bool IsPng(const fs::path& path)
{
    std::string extension = path.extension().string();
    for (char& character : extension)
    {
        character = character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    }
    return extension == ".png";
}

//! All pictures below a folder. Links to folders are not followed, so that a loop of them cannot trap us.
std::vector<std::string> PicturesBelow(const std::string& folder)
{
    std::vector<fs::path> found;
    std::error_code       error;
    fs::path              at = folder;
    for (fs::recursive_directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
    {
        at = entry->path();
        std::error_code unreadable;
        if (IsPng(at) && !entry->is_directory(unreadable))
        {
            found.push_back(at);
        }
    }
    if (error)
    {
        Fail(at.string(), error.message());
    }
    if (found.empty())
    {
        Fail(folder, "no PNG file in this folder");
    }
    std::sort(found.begin(), found.end());  // part by part, so that a folder's files stay together

    std::vector<std::string> paths;
    for (const fs::path& path : found)
    {
        paths.push_back(path.string());
    }
    return paths;
}

}  // namespace

std::string Shown(const std::string& path)
{
    return IsStream(path) ? "standard input" : OneLine(path);
}

Bytes ReadFile(const std::string& path)
{
    if (IsStream(path))
    {
        return ReadStream(stdin, path);
    }
    const File file(std::fopen(path.c_str(), "rb"));
    if (file == nullptr)
    {
        Fail(path, std::strerror(errno));
    }
    return ReadStream(file.get(), path);
}

void WriteFile(const std::string& path, std::string_view bytes)
{
    if (IsStream(path))
    {
        WriteOutput(bytes);
        return;
    }
    std::error_code ignored;
    const auto      status = fs::status(path, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status))
    {
        Fail(path, "not a regular file");  // the rename below would replace a device
    }
    const std::string neighbour = path + "." + std::to_string(::getpid()) + ".part";
    File              file(std::fopen(neighbour.c_str(), "wb"));
    if (file == nullptr)
    {
        Fail(path, std::strerror(errno));
    }
    int reason = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size() ? 0 : errno;
    if (std::fclose(file.release()) != 0 && reason == 0)
    {
        reason = errno;
    }
    if (reason == 0 && std::rename(neighbour.c_str(), path.c_str()) != 0)
    {
        reason = errno;
    }
    if (reason != 0)
    {
        std::remove(neighbour.c_str());
        Fail(path, std::strerror(reason));
    }
}

void WriteFile(const std::string& path, const Bytes& bytes)
{
    WriteFile(path, std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

void Print(const std::string& text)
{
    WriteOutput(text);
}

void RequireFree(const std::vector<std::string>& paths, bool replace)
{
    std::set<std::string> seen;
    for (const std::string& path : paths)
    {
        if (!seen.insert(fs::path(path).lexically_normal().string()).second)
        {
            Fail(path, "would be written twice");
        }
    }
    for (const std::string& path : paths)
    {
        if (IsStream(path))
        {
            continue;
        }
        std::error_code error;
        const auto      status = fs::symlink_status(path, error);
        if (!replace && fs::exists(status))
        {
            Fail(path, "exists already; --force replaces it");
        }
        if (error && status.type() == fs::file_type::none)
        {
            Fail(path, error.message());
        }
    }
}

void MakeFolder(const std::string& path)
{
    std::error_code error;
    if (fs::exists(path, error) && !fs::is_directory(path, error))
    {
        Fail(path, "not a folder");
    }
    fs::create_directories(path, error);
    if (error)
    {
        Fail(path, error.message());
    }
}

std::vector<std::string> FindPictures(const std::vector<std::string>& arguments)
{
    std::vector<std::string> paths;
    for (const std::string& argument : arguments)
    {
        std::error_code ignored;
        if (!IsStream(argument) && fs::is_directory(argument, ignored))
        {
            const std::vector<std::string> below = PicturesBelow(argument);
            paths.insert(paths.end(), below.begin(), below.end());
        }
        else
        {
            paths.push_back(argument);
        }
    }
    return paths;
}

TemporaryFolder::TemporaryFolder()
{
    std::error_code error;
    std::string     name = (fs::temp_directory_path(error) / "kanvo-image-XXXXXX").string();
    if (error || ::mkdtemp(name.data()) == nullptr)
    {
        Fail(name, std::strerror(error ? error.value() : errno));
    }
    m_path = name;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

}  // namespace kanvo_image
