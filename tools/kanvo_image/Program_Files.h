// Program_Files: files and standard streams as whole runs of bytes. A file that is written appears complete or not at
// all. What cannot be done is thrown as a Failure, one line that names the file and the reason.
#ifndef PROGRAM_FILES_H
#define PROGRAM_FILES_H

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kanvo_image
{

using Bytes = std::vector<std::uint8_t>;

//! Ends a command, or the part of it that deals with one picture: one line for stderr.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

//! A Failure that the command line caused, which has an exit code of its own.
struct UsageFailure : Failure
{
    using Failure::Failure;
};

//! Inputs beyond this are not read to their end.
constexpr std::uint64_t MaxInputBytes = std::uint64_t{1} << 30;

//! Whether a file name stands for standard input or output.
inline bool IsStream(const std::string& path)
{
    return path == "-";
}

//! What messages call a file.
std::string Shown(const std::string& path);

//! A file, or standard input for "-".
Bytes ReadFile(const std::string& path);

//! To a file, or to standard output for "-". A file is written beside its place and renamed.
void WriteFile(const std::string& path, std::string_view bytes);
void WriteFile(const std::string& path, const Bytes& bytes);

//! Text for people, to standard output.
void Print(const std::string& text);

//! Refuses when one of the files is there already and must not be replaced, or when two of them are the same.
void RequireFree(const std::vector<std::string>& paths, bool replace);

//! The folder is there afterwards.
void MakeFolder(const std::string& path);

//! The PNG files that the arguments mean: a folder stands for every *.png below it, sorted by name; everything else for
//! itself, "-" too. A folder without a picture is a failure.
std::vector<std::string> FindPictures(const std::vector<std::string>& arguments);

//! A folder of our own among the temporary ones, removed with what is in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    std::string File(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

}  // namespace kanvo_image

#endif
